// The main function of pellion-target, which makes and inspects target sounds.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/target/Conversion.h"
#include "tools/target/InfoReport.h"
#include "tools/target/Inspection.h"
#include "tools/target/Levels.h"
#include "tools/target/TargetCommandLine.h"
#include "tools/target/TargetEncoding.h"
#include "tools/target/TargetFile.h"
#include "tools/target/TargetSound.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

#include <exception>
#include <iostream>
#include <new>
#include <variant>

namespace {

/// Prints the findings on a file that was made as requested.
void printFindings(const QString& fileName) {
    const Inspection made = inspect(fileName);
    for (const Finding& finding : made.findings)
        printError(QStringLiteral("note: %1 %2").arg(finding.what, finding.consequence));
    for (const QString& note : made.notes)
        printError(QStringLiteral("note: %1").arg(note));
}

void printMade(const QString& fileName, const CWav& wav, const QVector<double>& samples,
               const QString& seed = {}) {
    std::cout << QStringLiteral("%1: %2, %3%4\n")
                     .arg(fileName, lengthText(wav), levelsText(samples), seed)
                     .toStdString();
}

int answer(const MakeRequest& request) {
    const QVector<double> samples = targetSound(request.recipe);
    if (samples.isEmpty()) {
        printError(QStringLiteral("the sound is silent: nothing was written"));
        return exitNotDone;
    }
    if (const auto beyond = firstSampleBeyondFullScale(samples)) {
        printError(
            QStringLiteral("sample %1, counted from 0, would be %2 and full scale is 1: nothing "
                           "was written; lower the level")
                .arg(beyond->number)
                .arg(beyond->value, 0, 'f', 6));
        return exitNotDone;
    }
    const CWav wav = encodedTarget(samples, request.recipe);
    const QString problem = writeTarget(wav, request.fileName, request.existing);
    if (!problem.isEmpty()) {
        printError(problem);
        return exitNotDone;
    }
    const bool isNoise = request.recipe.kind == SoundKind::Noise;
    const QString seed = isNoise ? QStringLiteral(", seed %1").arg(request.recipe.seed) : QString();
    printMade(request.fileName, wav, samples, seed);
    printFindings(request.fileName);
    return exitDone;
}

int answer(const ConvertRequest& request) {
    const Inspection source = inspect(request.sourceName);
    if (!source.isOpened) {
        printError(QStringLiteral("%1 cannot be opened as a regular file").arg(request.sourceName));
        return exitNotDone;
    }
    const Conversion conversion = convert(source, request.gainDecibels);
    if (!conversion.problem.isEmpty()) {
        printError(QStringLiteral("%1: %2").arg(request.sourceName, conversion.problem));
        return exitNotDone;
    }
    const QString problem = writeTarget(conversion.wav, request.fileName, request.existing);
    if (!problem.isEmpty()) {
        printError(problem);
        return exitNotDone;
    }
    for (const QString& step : conversion.steps)
        std::cout << step.toStdString() << '\n';
    printMade(request.fileName, conversion.wav, conversion.samples);
    printFindings(request.fileName);
    return exitDone;
}

int answer(const InfoRequest& request) {
    int good = 0;
    QJsonArray reports;
    for (const QString& fileName : request.fileNames) {
        const Inspection inspection = inspect(fileName);
        good += inspection.isAsIntended() ? 1 : 0;
        if (request.isJson) {
            reports << jsonReport(inspection);
            continue;
        }
        if (&fileName != &request.fileNames.constFirst())
            std::cout << '\n';
        printReport(inspection);
    }
    if (request.isJson)
        std::cout << QJsonDocument(reports).toJson().constData();
    else if (request.fileNames.size() > 1)
        std::cout << "\nRead as intended: " << good << " of " << request.fileNames.size()
                  << " files\n";
    return good == request.fileNames.size() ? exitDone : exitNotDone;
}

} // namespace

int main(int argc, char** argv) {
    // So that the help shows the program's name and not its path.
    static char name[] = "pellion-target";
    if (argc > 0)
        argv[0] = name;
    const QCoreApplication application(argc, argv);
    try {
        return finishOutput(std::visit([](const auto& request) { return answer(request); },
                                       parseCommandLine(QCoreApplication::arguments())));
    } catch (const std::bad_alloc&) {
        printError(QStringLiteral("not enough memory"));
    } catch (const std::exception& exception) {
        printError(QString::fromUtf8(exception.what()));
    }
    return exitNotDone;
}
