// Draws a target's waveform and spectrum in the main window's charts, and saves a picture of them:
// draw_target TARGET PICTURE.
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A whole process from launch to a PNG file, for comparison with other programs' scripts. Like them
// it needs no screen: the window is laid out, but not shown.
#include "app/MainWindow.h"

#include <QApplication>
#include <QFileInfo>
#include <QPainter>
#include <QTimer>
#include <QtCharts/QChartView>

#include <cstdio>

namespace {

class DrawnTarget : public MainWindow {
public:
    DrawnTarget() {
        setAttribute(Qt::WA_DontShowOnScreen);
        // The window's size on a screen of 1920 x 1080 pixels.
        resize(1536, 972);
        show();
    }

    /// Prepares a practice session as "Practice" does, without the dialog. Returns false if the
    /// file is not a usable target.
    bool prepare(const QFileInfo& target) {
        nRepetitions = nRepetitionsPractice;
        getParameters();
        chooseTarget(target);
        prepareTarget();
        return nFiles > 0;
    }

    /// Writes both charts, one above the other, to a PNG file; returns false where that fails.
    bool keepPicture(const QString& path) {
        QImage picture(chartViewWav->width(), chartViewWav->height() + chartViewFFT->height(),
                       QImage::Format_RGB32);
        QPainter painter(&picture);
        // As widgets: the views' own rendering would leave out their frames.
        chartViewWav->QWidget::render(&painter);
        chartViewFFT->QWidget::render(&painter, QPoint(0, chartViewWav->height()));
        painter.end();
        // Low compression: speed matters more than the file's size.
        constexpr int quality = 80;
        return picture.save(path, "PNG", quality);
    }
};

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: draw_target TARGET PICTURE\n");
        return 2;
    }
    DrawnTarget window;
    bool isPrepared = false;
    // Before the next timer, the charts lay out the new points.
    QTimer::singleShot(0, &window,
                       [&] { isPrepared = window.prepare(QFileInfo(QFile::decodeName(argv[1]))); });
    QTimer::singleShot(0, &window, [&] {
        const bool isKept = isPrepared && window.keepPicture(QFile::decodeName(argv[2]));
        QApplication::exit(isKept ? 0 : 1);
    });
    return QApplication::exec();
}
