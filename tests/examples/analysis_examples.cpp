// Tests of the example analyses: the simulated listeners, and pictures.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_analysis.h"

#include "support/FileBytes.h"
#include "support/ProgramRun.h"

#include <QImage>
#include <QTest>
#include <QXmlStreamReader>

#include <cmath>

namespace {

/// The residuals (cents) of the sessions whose match was approached from one side.
struct Residuals {
    int count = 0;
    double mean = 0;
    double squares = 0; ///< Sum of the squared deviations from the mean.
};

/// Reads them from rows of the table of sessions.
Residuals residualsFrom(const QString& side, const QStringList& rows) {
    Residuals residuals;
    for (const QString& row : rows.filter(u'\t' + side + u'\t')) {
        const double deviation = row.section(u'\t', 13, 13).toDouble() - residuals.mean;
        residuals.mean += deviation / ++residuals.count;
        residuals.squares += deviation * deviation * (residuals.count - 1) / residuals.count;
    }
    return residuals;
}

} // namespace

void TestAnalysisExamples::simulatedListenersAreRecognised() {
    QFETCH(QStringList, command);
    const AnalysisRun run = analyse(command, {"--targets", simulated + "/targets.tsv", simulated});
    QCOMPARE(run.errors, QString());
    const QStringList sessions = run.output.section("\n\n", 0, 0).split(u'\n');
    const QStringList rows = run.output.section("\n\n", 1).split(u'\n');
    const QString truth = testsupport::readBytes(simulated + "/truth.tsv");
    QCOMPARE(truth.count(u'\n'), 6);
    for (const QString& line : truth.split(u'\n').mid(1, 5)) {
        const QStringList expected = line.split(u'\t');
        const double bias = expected[1].toDouble();
        const double lag = expected[2].toDouble();
        const double scatter = expected[3].toDouble();
        const QStringList found = rows.filter(expected[0] + "\texperiment\t6\t")[0].split(u'\t');
        QCOMPARE(found[7], expected[4]);
        // Within two standard errors of the mean of six matches.
        const double sixMatches = 2 * scatter / std::sqrt(6);
        QVERIFY(std::abs(found[8].toDouble() - bias) < sixMatches);
        const QStringList ofListener = sessions.filter(expected[0] + "\texperiment\t");
        const Residuals above = residualsFrom("above", ofListener);
        const Residuals below = residualsFrom("below", ofListener);
        QCOMPARE(above.count, 3);
        QCOMPARE(below.count, 3);
        // Half the difference between two means of three has the standard error of a mean of six.
        QVERIFY(std::abs((above.mean - below.mean) / 2 - lag) < sixMatches);
        // The squares around both means, in units of the variance, are distributed as chi-square
        // with 6 - 2 degrees of freedom; 95% of it lies between these quantiles.
        const double squares = (above.squares + below.squares) / (scatter * scatter);
        QVERIFY(squares > 0.484 && squares < 11.143);
    }
}

void TestAnalysisExamples::simulationCanBeRepeated() {
    if (!isThere(python()))
        QSKIP("python3 is not installed");
    const QTemporaryDir folder;
    QCOMPARE(
        testsupport::runProgram(python()[0], {simulated + "/simulate.py", folder.path()}).status,
        0);
    QList<QByteArray> shipped = testsupport::contentsOf(simulated);
    QVERIFY(shipped.removeOne(testsupport::readBytes(simulated + "/simulate.py")));
    QCOMPARE(testsupport::contentsOf(folder.path()), shipped);
}

void TestAnalysisExamples::pictureHasEveryRequest() {
    if (!isThere(python()))
        QSKIP("python3 is not installed");
    const QTemporaryDir folder;
    QVERIFY(writeSessions(folder, {{"<&\"", "experiment", 1, "t.wav", {300, 600, 440}},
                                   {"<&\"", "practice", 1, "t.wav", {450, 440}},
                                   {"S", "practice", 1, "t.wav", {450, 440}},
                                   {"S", "practice", 2, "t.wav", {}}}));
    const QString picture = folder.filePath("trend.svg");
    QCOMPARE(analyse(python(), {"--target", "440", "--picture", picture, folder.path()}).status, 0);
    QXmlStreamReader reader(testsupport::readBytes(picture));
    QStringList texts;
    QStringList lines;
    QMap<QString, int> circles; // By radius.
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement())
            continue;
        if (reader.name() == QLatin1String("circle"))
            ++circles[reader.attributes().value("r").toString()];
        else if (reader.name() == QLatin1String("polyline"))
            lines << reader.attributes().value("points").toString();
        else if (reader.name() == QLatin1String("text"))
            texts << reader.readElementText();
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    // A large one for each match and one beside each name.
    QCOMPARE(circles, (QMap<QString, int>{{"2.5", 4}, {"5", 6}}));
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines[0].split(u' ').size(), 3);
    // Both matches are as high as the target; 450 Hz is higher, and y runs downwards.
    const auto heightOf = [&](int session, int request) {
        return lines[session].split(u' ')[request].section(u',', 1).toDouble();
    };
    QCOMPARE(heightOf(0, 2), heightOf(1, 1));
    QVERIFY(heightOf(0, 1) < heightOf(1, 0) && heightOf(1, 0) < heightOf(1, 1));
    for (const char* text :
         {"Requests and matches: <&\"", "Requests and matches: S", "experiment 1", "practice 1",
          "- - target, 440 Hz", "Frequency (Hz)", "Request"})
        QVERIFY2(texts.contains(text), text);
    QVERIFY(!texts.contains("practice 2"));
}

void TestAnalysisExamples::pictureHasAColourForEachSession() {
    if (!isThere(statisticsLanguage()))
        QSKIP("Rscript is not installed");
    const QTemporaryDir folder;
    QVERIFY(writeSessions(folder, {{"S", "practice", 1, "t.wav", {300, 600, 440}},
                                   {"S", "practice", 2, "t.wav", {450, 440}},
                                   {"T", "practice", 1, "t.wav", {450, 440}}}));
    const QString picture = folder.filePath("trend.png");
    const AnalysisRun run =
        analyse(statisticsLanguage(), {"--target", "440", "--picture", picture, folder.path()});
    QVERIFY2(run.status == 0 && run.errors.isEmpty(), qPrintable(run.errors));
    const QImage image(picture);
    QCOMPARE(image.size(), QSize(960, 1000)); // A panel for each subject.
    QMap<QRgb, int> pixels;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ++pixels[image.pixel(x, y)];
    QVERIFY(pixels[qRgb(0xFF, 0xFF, 0xFF)] > image.width() * image.height() / 2);
    QVERIFY(pixels[qRgb(0x00, 0x72, 0xB2)] > 100);
    QVERIFY(pixels[qRgb(0xE6, 0x9F, 0x00)] > 100);
    QCOMPARE(pixels[qRgb(0x00, 0x9E, 0x73)], 0);
}
