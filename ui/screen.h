#pragma once

#include "ui/collection.h"
#include "ui/collectionnavigator.h"
#include "ui/itemlabel.h"
#include "ui/mywidget.h"

#include <QHBoxLayout>
#include <QPointer>
#include <QPropertyAnimation>
#include <QVBoxLayout>

class DataLine;

/// A page of the LCD: a title, the contents of the derived class, and a bar with Back and Save, of which it shows
/// what it asked for. Made once, opened and left many times; NavigationManager stacks the open ones.
///
/// The knob moves a highlight through the collections of the navigator, its push selects; Escape leaves.
class Screen : public MyWidget
{
    Q_OBJECT
public:
    /// All of it, in pixels.
    static constexpr QRect wholeLcd{0, 0, 320, 240};

    explicit Screen(QWidget *parent);

    /// Shown in capitals.
    virtual void setTitle(const QString &title);
    /// @param active true when the screen becomes the visible one, false when it stops being that.
    virtual void setActive(bool active);
    /// A row of a list is about to open this screen: takes from it what the screen is to show or edit.
    virtual void openedFrom(const DataLine &row);

    // A screen has the buttons that it asks for.
    void showSaveButton();
    void showBackButton();
    /// Escape does not leave it.
    void setRootScreen() { m_rootScreen = true; }
    /// Deactivates and activates it: what it shows is fetched anew.
    void reactivate();

    // A counter of all screens that still build their rows from answers of the device.
    static void beginPendingEntry();
    /// The last one to end reports pendingEntriesFinished().
    void endPendingEntry();
    static int pendingEntries();

    // The steps of NavigationManager, which decides when.
    void prepareToOpen();
    /// Where it is; whoever it was to hide stays.
    void stopSlide();
    /// @param covered hidden when the slide is over; may be null.
    void slideIn(Screen *covered);
    void slideOut();

public slots:
    void showMe();
    void hideMe();

signals:
    void pendingEntriesFinished();

protected slots:
    virtual void savePressed();
    virtual void backPressed();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    /// The knob was turned, but there is no further stop. @param direction 1 down, -1 up.
    virtual void turnedPastLastStop(int direction);

    CollectionNavigator &navigator() { return m_navigator; }
    /// For the screen's own widgets.
    QHBoxLayout *contentLayout() { return m_contentLayout; }
    /// Rows stand in front of it.
    Collection *saveCollection() { return &m_saveCollection; }
    enum class Contents { Fill, Centred };
    /// Puts header, contents and bottom bar under each other. Every derived class does, once.
    void stackContents(Contents contents);
    /// For a question, instead of "Save" and "Back".
    void setButtonTexts(const QString &save, const QString &back);

private slots:
    void animationFinished();

private:
    void makeHeader();
    void makeBottomBar();
    void slide(const QRect &target, Screen *hideAtEnd);

    CollectionNavigator m_navigator;
    QVBoxLayout m_contentsLayout;
    QVBoxLayout *m_headerLayout;
    QHBoxLayout *m_contentLayout;
    QHBoxLayout *m_bottomBar;
    bool m_rootScreen = false;
    StyledLabel m_titleLabel;
    QPropertyAnimation m_animation;
    QPointer<Screen> m_hideWhenAnimationEnds;
    ItemLabel m_saveIcon, m_saveLabel, m_backIcon, m_backLabel;
    Collection m_saveCollection, m_backCollection;
};
