// The results file: the name proposed and the text, without a window.
// SPDX-License-Identifier: GPL-3.0-or-later
#include "test_results.h"

#include "session/ResultsFile.h"
#include "support/TestMain.h"

#include <QLineEdit>
#include <QLocale>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

void SavingTest::setUp() {
    auto& window = fixture->window();
    window.lineEditOutputFilePath->setText(fixture->folder.path());
    window.data.outputFilePath = fixture->folder.path();
    Record target;
    target.fileName = QStringLiteral("File001.wav");
    window.data.records = {target};
    window.show();
}

void SavingTest::save(const QVector<double>& frequenciesMatched) {
    fixture->window().trendFrequencies = frequenciesMatched;
    fixture->window().writeDataToTxt();
}

namespace {

/// Sets the locale of Qt's own conversions; the destructor restores it.
class DefaultLocale {
public:
    explicit DefaultLocale(const QLocale& locale) { QLocale::setDefault(locale); }
    ~DefaultLocale() { QLocale::setDefault(earlier); }
    Q_DISABLE_COPY_MOVE(DefaultLocale)

private:
    QLocale earlier;
};

/// The general format with six significant digits, without Qt and in no locale.
QString generalFormat(double value) {
    std::array<char, 32> digits = {};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                          std::chars_format::general, 6)
                                .ptr;
    return QString::fromLatin1(digits.data(), int(end - digits.data()));
}

} // namespace

void TestResultsFile::proposedName_data() {
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("name");
    const auto row = [](const char* name, const QString& code, const QString& type, int number,
                        const QString& expected) {
        QTest::newRow(name) << code << type << number << expected;
    };
    row("defaults", "SUB001", "practice", 1, "SUB001_practice001.txt");
    row("two digits", "S7", "experiment", 12, "S7_experiment012.txt");
    row("99", "S7", "practice", 99, "S7_practice099.txt");
    row("100", "S7", "practice", 100, "S7_practice100.txt");
    row("999", "S7", "practice", 999, "S7_practice999.txt");
    row("1000", "S7", "practice", 1000, "S7_practice1000.txt");
    row("largest", "S7", "practice", std::numeric_limits<int>::max(), "S7_practice2147483647.txt");
    row("no code", "", "practice", 1, "_practice001.txt");
    row("no type", "S7", "", 1, "S7_001.txt");
    row("blanks", " S 7 ", "practice", 1, " S 7 _practice001.txt");
    row("placeholders", "%1%2", "%3", 1, "%1%2_%3001.txt");
    row("beyond ASCII", "Prüfling 七", "practice", 1, "Prüfling 七_practice001.txt");
}

void TestResultsFile::proposedName() {
    QFETCH(QString, code);
    QFETCH(QString, type);
    QFETCH(int, number);
    QTEST(proposedOutputFileName(code, type, number), "name");
}

void TestResultsFile::frequencyIsWrittenWithSixSignificantDigits_data() {
    QTest::addColumn<double>("frequency");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 640.0 << "640";
    QTest::newRow("quarter") << 523.25 << "523.25";
    QTest::newRow("eighth") << 440.125 << "440.125";
    QTest::newRow("third") << 1.0 / 3 << "0.333333";
    QTest::newRow("two thirds") << 2.0 / 3 << "0.666667";
    QTest::newRow("seven digits") << 440.1251 << "440.125";
    QTest::newRow("trailing zeros") << 100000.0 << "100000";
    QTest::newRow("largest of six digits") << 999999.0 << "999999";
    QTest::newRow("rounded up to seven digits") << 999999.5 << "1e+06";
    QTest::newRow("million") << 1e6 << "1e+06";
    QTest::newRow("above a million") << 1234567.0 << "1.23457e+06";
    QTest::newRow("smallest fixed") << 0.0001 << "0.0001";
    QTest::newRow("smaller") << 0.00001 << "1e-05";
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("negative") << -1.5 << "-1.5";
}

void TestResultsFile::frequencyIsWrittenWithSixSignificantDigits() {
    QFETCH(double, frequency);
    QFETCH(QString, text);
    QCOMPARE(resultsText("t.wav", {frequency}).toLocal8Bit(), expectedResults("t.wav", {text}));
}

void TestResultsFile::everyFrequencyReadsAsInTheGeneralFormat() {
    QVector<double> frequencies;
    QStringList texts;
    for (int eighths = 0; eighths <= 8 * 1000; ++eighths)
        frequencies.append(eighths / 8.0);
    for (int power = -30; power <= 30; ++power)
        frequencies.append(std::pow(10.0, power) / 3);
    for (const double frequency : frequencies)
        texts.append(generalFormat(frequency));
    QCOMPARE(resultsText("t.wav", frequencies).toLocal8Bit(), expectedResults("t.wav", texts));
}

void TestResultsFile::noRequestGivesTheHeaderAlone() {
    QCOMPARE(resultsText("File001.wav", {}),
             QStringLiteral("filename\tnTrials\tfrequency matched (Hz)\r\n"));
}

void TestResultsFile::requestsAreCountedFromOneInTheirOrder() {
    QCOMPARE(resultsText("File001.wav", {500, 640, 500}),
             QStringLiteral("filename\tnTrials\tfrequency matched (Hz)\r\n"
                            "File001.wav\t1\t500\r\n"
                            "File001.wav\t2\t640\r\n"
                            "File001.wav\t3\t500\r\n"));
}

void TestResultsFile::requestNumbersMayHaveSeveralDigits() {
    const QStringList lines = resultsText("t.wav", QVector<double>(1234, 500)).split("\r\n");
    QCOMPARE(lines.size(), 1 + 1234 + 1);
    QCOMPARE(lines.at(10), QStringLiteral("t.wav\t10\t500"));
    QCOMPARE(lines.at(100), QStringLiteral("t.wav\t100\t500"));
    QCOMPARE(lines.at(1234), QStringLiteral("t.wav\t1234\t500"));
    QCOMPARE(lines.last(), QString());
}

void TestResultsFile::targetNameIsUnchangedOnEachLine_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << "";
    QTest::newRow("blanks") << " a b .wav ";
    QTest::newRow("quotes") << "\"a\",'b'.wav";
    QTest::newRow("placeholder") << "%1.wav";
    QTest::newRow("beyond ASCII") << "Größe 目標.wav";
}

void TestResultsFile::targetNameIsUnchangedOnEachLine() {
    QFETCH(QString, name);
    QCOMPARE(resultsText(name, {500, 640}).toUtf8(),
             "filename\tnTrials\tfrequency matched (Hz)\r\n" + name.toUtf8() + "\t1\t500\r\n" +
                 name.toUtf8() + "\t2\t640\r\n");
}

void TestResultsFile::localeWithADecimalCommaKeepsThePoint() {
    const DefaultLocale german(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(QLocale().toString(1234.5), QStringLiteral("1.234,5"));
    QCOMPARE(resultsText("t.wav", {1234.5, 12345}).toLocal8Bit(),
             expectedResults("t.wav", QStringList{"1234.5", "12345"}));
}

int main(int argc, char** argv) {
    return testsupport::runWithWindows<TestResultsFile, TestResultsNaming, TestResultsSaving,
                                       TestFileReplacement, TestResponseJournal,
                                       TestResultsNothingLost>(argc, argv);
}
