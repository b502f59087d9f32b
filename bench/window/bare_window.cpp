// The floor for the window's start, memory and wake-ups: an empty window of the same size, with a tray icon.
#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QPixmap square(18, 18);
    square.fill(Qt::black);
    QSystemTrayIcon tray{QIcon(square)};
    tray.show();
    QWidget window;
    window.setWindowTitle("bare");
    window.setFixedSize(460, 560);
    if (argc > 1) (new QLabel(QString::fromUtf8(argv[1]), &window))->setFixedWidth(400);
    window.show();
    return QApplication::exec();
}
