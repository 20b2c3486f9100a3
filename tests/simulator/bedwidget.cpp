/// A widget for the test bed's LCD: green until Return comes, blue from then on. Escape ends it.
#include <QApplication>
#include <QKeyEvent>
#include <QPalette>
#include <QWidget>

namespace {

class ColourWidget : public QWidget
{
public:
    ColourWidget()
    {
        setAutoFillBackground(true);
        show(QColor(0x44, 0xda, 0x6e));
        showFullScreen();
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Return)
            show(QColor(0x2d, 0x96, 0xe9));
        else if (event->key() == Qt::Key_Escape)
            QCoreApplication::exit(0);
    }

private:
    using QWidget::show;
    void show(const QColor &colour) { setPalette(QPalette(colour)); }
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    ColourWidget widget;
    return QApplication::exec();
}
