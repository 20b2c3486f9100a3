#include "ui/screen.h"

#include "ui/keys.h"
#include "ui/navigationmanager.h"
#include "ui/styles.h"

#include <QCoreApplication>
#include <QFrame>
#include <QPainter>

namespace {

constexpr QRect parkedRect = Screen::wholeLcd.translated(Screen::wholeLcd.width(), 0);

int pendingEntryCount = 0;

/// The line below the title. Filled: Qt draws a frame's line dot by dot.
class Separator : public QFrame
{
public:
    explicit Separator(QWidget *screen)
        : QFrame(screen)
    {
        setFrameShape(QFrame::HLine);
        setLineWidth(1);
        setAttribute(Qt::WA_OpaquePaintEvent);
        m_look.setSheet(QStringLiteral("*{ color: #363636}"));
        m_look.update(*this);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::black);
        painter.fillRect(0, height() / 2, width(), 1, m_look->color);
    }

private:
    StyledLook m_look;
};

} // namespace

Screen::Screen(QWidget *parent)
    : MyWidget(parent, Qt::FramelessWindowHint)
    , m_contentsLayout(this)
    , m_headerLayout(new QVBoxLayout) // the contents layout adopts them when the derived class adds them
    , m_contentLayout(new QHBoxLayout)
    , m_bottomBar(new QHBoxLayout)
    , m_titleLabel(this)
    , m_animation(this, "geometry")
    , m_saveIcon(this)
    , m_saveLabel(this)
    , m_backIcon(this)
    , m_backLabel(this)
{
    setFocusPolicy(Qt::NoFocus); // the focus stack decides, not Qt's tab order
    m_animation.setDuration(300);
    m_animation.setEasingCurve(QEasingCurve::InOutCubic);
    connect(&m_animation, &QPropertyAnimation::finished, this, &Screen::animationFinished);
    setGeometry(parkedRect);
    hide();

    m_contentsLayout.setContentsMargins(0, 0, 0, 0);
    m_contentsLayout.setSpacing(0);
    m_contentLayout->setContentsMargins(0, 0, 0, 0);
    makeHeader();
    makeBottomBar();
}

void Screen::makeHeader()
{
    m_headerLayout->setContentsMargins(10, 10, 10, 10);
    m_headerLayout->setSpacing(10);
    m_titleLabel.setSheet(Style::title);
    m_headerLayout->addWidget(&m_titleLabel);
    m_headerLayout->addWidget(new Separator(this));
}

void Screen::makeBottomBar()
{
    m_bottomBar->setContentsMargins(10, 10, 10, 10);
    m_bottomBar->setSpacing(8);
    m_saveIcon.setText(Glyph::check);
    m_saveIcon.setSheet(Style::saveIcon);
    m_backIcon.setText(Glyph::doubleAngleLeft);
    m_backIcon.setSheet(Style::backIcon);
    m_saveLabel.setSheet(Style::buttonText);
    m_backLabel.setSheet(Style::buttonText);
    setButtonTexts(QStringLiteral("Save"), QStringLiteral("Back"));
    connect(&m_saveLabel, &ItemLabel::signalSelected, this, &Screen::savePressed);
    connect(&m_backLabel, &ItemLabel::signalSelected, this, &Screen::backPressed);
    m_saveCollection.addWidget(&m_saveIcon);
    m_saveCollection.addWidget(&m_saveLabel);
    m_backCollection.addWidget(&m_backIcon);
    m_backCollection.addWidget(&m_backLabel);

    m_bottomBar->addWidget(&m_backIcon);
    m_bottomBar->addWidget(&m_backLabel);
    m_bottomBar->addStretch(1);
    m_bottomBar->addWidget(&m_saveIcon);
    m_bottomBar->addWidget(&m_saveLabel);
    for (Collection *collection : {&m_saveCollection, &m_backCollection}) {
        m_navigator.append(collection);
        m_navigator.hide(collection);
    }
}

void Screen::stackContents(Contents contents)
{
    m_contentsLayout.addLayout(m_headerLayout);
    if (contents == Contents::Centred)
        m_contentsLayout.addStretch();
    m_contentsLayout.addLayout(m_contentLayout);
    if (contents == Contents::Centred)
        m_contentsLayout.addStretch();
    m_contentsLayout.addLayout(m_bottomBar);
}

void Screen::setButtonTexts(const QString &save, const QString &back)
{
    m_saveLabel.setText(save);
    m_backLabel.setText(back);
}

void Screen::setTitle(const QString &title) { m_titleLabel.setText(title.toUpper()); }

void Screen::setActive(bool) { }
void Screen::openedFrom(const DataLine &) { }
void Screen::turnedPastLastStop(int) { }
void Screen::savePressed() { hideMe(); }
void Screen::backPressed() { hideMe(); }

void Screen::showSaveButton() { m_navigator.show(&m_saveCollection, false); }
void Screen::showBackButton() { m_navigator.show(&m_backCollection, false); }

void Screen::reactivate()
{
    setActive(false);
    setActive(true);
}

void Screen::beginPendingEntry() { ++pendingEntryCount; }

void Screen::endPendingEntry()
{
    if (pendingEntryCount > 0 && --pendingEntryCount == 0)
        emit pendingEntriesFinished();
}

int Screen::pendingEntries() { return pendingEntryCount; }

void Screen::showMe() { NavigationManager::instance()->push(this); }
void Screen::hideMe() { NavigationManager::instance()->pop(this); }

void Screen::prepareToOpen()
{
    stopSlide();
    m_navigator.reset();
    setVisible(true);
}

void Screen::stopSlide()
{
    m_animation.stop();
    m_hideWhenAnimationEnds = nullptr;
}

void Screen::slideIn(Screen *covered) { slide(wholeLcd, covered); }
void Screen::slideOut() { slide(parkedRect, this); }

void Screen::slide(const QRect &target, Screen *hideAtEnd)
{
    m_hideWhenAnimationEnds = hideAtEnd;
    m_animation.setStartValue(geometry());
    m_animation.setEndValue(target);
    m_animation.start();
}

void Screen::animationFinished()
{
    // The covered screen may have come to the top again meanwhile.
    if (m_hideWhenAnimationEnds && !NavigationManager::instance()->isTop(m_hideWhenAnimationEnds))
        m_hideWhenAnimationEnds->hide();
}

void Screen::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (isPreviousKey(key)) {
        if (!m_navigator.previous())
            turnedPastLastStop(-1);
    } else if (isNextKey(key)) {
        if (!m_navigator.next())
            turnedPastLastStop(1);
    } else if (isConfirm(key)) {
        m_navigator.select();
    } else if (key == Qt::Key_Escape) {
        if (!m_rootScreen)
            NavigationManager::instance()->pop(this);
    } else if (key == Qt::Key_Delete) {
        QCoreApplication::exit(0);
    } else {
        event->ignore();
    }
}
