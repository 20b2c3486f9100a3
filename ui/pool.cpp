#include "ui/pool.h"

#include "games/game.h"
#include "games/game2.h"
#include "managers/presetmanager.h"
#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "ui/screenchoose.h"
#include "ui/screenenterstandby.h"
#include "ui/screenresettofactorydefaults.h"
#include "ui/screens/edidbrowser.h"
#include "ui/screens/presetdialogues.h"
#include "ui/screens/screenpreset.h"
#include "ui/screens/screenroot.h"
#include "ui/screensetdatetime.h"
#include "ui/screensetip.h"
#include "ui/screenslider.h"
#include "ui/screenwarning.h"
#include "ui/screenwheel.h"
#include "ui/styles.h"

#include <QCoreApplication>
#include <QNetworkInterface>
#include <QPointer>
#include <QTimerEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr QMargins noticeMargins(15, 10, 15, 10);
constexpr qsizetype mostOfMessage = 1000; // characters; more than the LCD has room for
constexpr int noticeEdges = noticeMargins.left() + noticeMargins.right() + 2; // and the border

QString addressMessage(const QString &host)
{
    return QStringLiteral("Download log files:\n\thttp://%1/log\nFirmware upgrade:\n\thttp://%1/firmware").arg(host);
}

/// Where a browser finds the device: the last address of the last interface that is up.
QString addressMessage()
{
    QString address;
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &interface : interfaces) {
        if (!interface.flags().testFlags(QNetworkInterface::IsUp | QNetworkInterface::IsRunning))
            continue;
        const QList<QNetworkAddressEntry> entries = interface.addressEntries();
        for (const QNetworkAddressEntry &entry : entries) {
            const QHostAddress ip = entry.ip();
            if (ip.protocol() == QAbstractSocket::IPv4Protocol && ip != QHostAddress(QHostAddress::LocalHost)) {
                address = ip.toString();
                qDebug("\"%s\"", qUtf8Printable(address));
            }
        }
    }
    return address.isEmpty() ? QStringLiteral("Plz connect ethernet cable...") : addressMessage(address);
}

/// The message, shortened where it would not fit into the largest box: a word that is wider, and the end.
QString fittedMessage(const QString &message, QLabel &label)
{
    const QFontMetrics metrics = label.fontMetrics();
    const QSize room = label.maximumSize() - QSize(noticeEdges, noticeMargins.top() + noticeMargins.bottom() + 2);
    QStringList words = message.left(mostOfMessage).split(' ');
    for (QString &word : words)
        word = metrics.elidedText(word, Qt::ElideRight, room.width(), Qt::TextExpandTabs);
    QString text = words.join(' ');
    const QRect box(0, 0, room.width(), 10 * room.height());
    while (metrics.boundingRect(box, Qt::TextWordWrap | Qt::TextExpandTabs, text).height() > room.height())
        text = text.chopped(std::min<qsizetype>(text.size(), 2)) + QChar(0x2026);
    return text;
}

/// A chain of dialogues, the topmost first: each leaves only from the top.
template <typename... Screens> void unwind(Screens *...screens) { (screens->hideMe(), ...); }

} // namespace

Pool *Pool::instance()
{
    static QPointer<Pool> self;
    if (!self) {
        self = new Pool; // owned by the post routine
        qAddPostRoutine([] {
            if (self)
                self->hide(); // delivers the keys that were pressed last, while there is somebody to take them
            delete self.data();
        });
    }
    return self;
}

Pool::Pool()
    : MyWidget(nullptr, Qt::FramelessWindowHint)
{
    m_lockTimer.setSingleShot(true);
    m_lockTimer.setInterval(3s);
    m_noticeTimer.setSingleShot(true);
    m_noticeTimer.setInterval(3s);
    setGeometry(Screen::wholeLcd);
    auto *label = new StyledLabel(this);
    label->setSheet(Style::message);
    label->setText(QStringLiteral("The matrix is about to start."));
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label, 0, Qt::AlignCenter);
    setVisible(true);
    setFocus(); // keys are posted to the widget with the focus; without one they are lost
}

void Pool::initScreens()
{
    makeSharedScreens();
    makeNotices();
    auto *root = new ScreenRoot(this, m_shared);
    root->setTitle(QStringLiteral("Main Menu"));
    root->showMe();
    m_bootScreen->present();
    connect(root, &Screen::pendingEntriesFinished, this, &Pool::menuEntriesReady);
}

void Pool::makeSharedScreens()
{
    m_slider = new ScreenSlider(this);
    m_enterStandby = new ScreenEnterStandby(this);
    m_confirmLoadPreset = new ScreenConfirmLoadPreset(this);
    m_loadPreset = new ScreenLoadPreset(this, m_confirmLoadPreset);
    m_presetWarning = new ScreenPresetWarning(this);
    m_confirmSavePreset = new ScreenConfirmSavePreset(this);
    m_savePreset = new ScreenSavePreset(this, m_confirmSavePreset);
    m_shared = {
        .choose = new ScreenChoose(this),
        .slider = m_slider,
        .setDate = new ScreenSetDate(this),
        .setIp = new ScreenSetIp(this),
        .setTime = new ScreenSetTime(this),
        .wheel = new ScreenWheel(this),
        .edidViewer = new ScreenEdidViewer(this),
        .edidSwitcher = new ScreenEdidSwitcher(this),
        .edidSaver = new ScreenEdidSaver(this),
        .resetToFactoryDefaults = new ScreenResetToFactoryDefaults(this),
        .enterStandby = m_enterStandby,
        .loadPreset = m_loadPreset,
        .savePreset = m_savePreset,
        .game = new Game(this),
        .game2 = new Game2(this),
    };
}

void Pool::makeNotices()
{
    m_bootScreen = new ScreenReconnecting(this);
    m_bootScreen->setTitle(QStringLiteral("Booting..."));
    m_bootScreen->setMessage(QStringLiteral("Please wait..."));
    m_bootFailedScreen = new ScreenFail(this);
    m_bootFailedScreen->setTitle(QStringLiteral("Booting Failed"));
    m_bootFailedScreen->setMessage(addressMessage(QStringLiteral("ip")));
    m_lockedScreen = new ScreenWarning(this, false, false);
    m_lockedScreen->setTitle(QStringLiteral("Warning"));
    m_lockedScreen->setMessage(QStringLiteral("Front panel is locked."));
    connect(&m_lockTimer, &QTimer::timeout, m_lockedScreen, &ScreenWarning::withdraw);
    m_upgradingScreen = new ScreenWarning(this, false, false);
    m_upgradingScreen->setTitle(QStringLiteral("Upgrading..."));
    m_upgradingScreen->setMessage(QStringLiteral("Please wait while upgrading."));

    m_lcdMessage = propLcdMessage;
    m_noticeLabel = new StyledLabel(this);
    m_noticeLabel->setSheet(QStringLiteral("*{ font-family: RobotoMedium; font-size: 19px; color: #FFFFFF; "
                                           "background-color: #2c2c2c; border: 1px solid #2d96e9}"));
    m_noticeLabel->setAlignment(Qt::AlignCenter);
    m_noticeLabel->setWordWrap(true);
    m_noticeLabel->setMaximumSize(300, 220);
    m_noticeLabel->setMinimumWidth(100);
    m_noticeLabel->setContentsMargins(noticeMargins);
    m_noticeLabel->hide();
    connect(&m_noticeTimer, &QTimer::timeout, m_noticeLabel, &QWidget::hide);
}

bool Pool::focusNextPrevChild(bool) { return false; }

void Pool::menuEntriesReady() { m_bootScreen->withdraw(); }

void Pool::connectionStateChanged(bool connected)
{
    const QString messageNode = Dt3Manager::nodeOf(m_lcdMessage.path());
    if (!connected) {
        Dt3Sink::close(messageNode);
        m_slider->connectionLost();
        m_enterStandby->connectionLost();
        m_bootScreen->setTitle(QStringLiteral("Reconnecting..."));
        m_bootScreen->setMessage(QStringLiteral("Attempting to reconnect."));
        m_bootScreen->present();
        return;
    }
    m_addressTimer.stop();
    if (Screen::pendingEntries() == 0)
        m_bootScreen->withdraw(); // else when the menu is complete
    m_bootFailedScreen->withdraw();
    open(messageNode);
}

void Pool::connectionTimeoutExpired()
{
    m_bootFailedScreen->setMessage(addressMessage());
    m_bootScreen->withdraw();
    m_bootFailedScreen->present();
    m_addressTimer.start(10'000, this); // ms: a cable may be plugged in
}

void Pool::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_addressTimer.timerId())
        m_bootFailedScreen->setMessage(addressMessage());
}

void Pool::lockedWarningAction()
{
    if (!m_lockTimer.isActive())
        m_lockedScreen->present();
    m_lockTimer.start();
}

void Pool::preselectAction(const QString &) { }

void Pool::upgradeStateChanged(bool upgrading, uint8_t progress)
{
    Q_UNUSED(progress)
    if (upgrading)
        m_upgradingScreen->present();
    else
        m_upgradingScreen->withdraw();
}

void Pool::factoryDefaultButtonPushed() { m_shared.resetToFactoryDefaults->showMe(); }

void Pool::loadPresetButtonPushed()
{
    unwind(m_confirmSavePreset, m_savePreset, m_presetWarning, m_confirmLoadPreset);
    m_loadPreset->showMe();
    m_loadPresetPending = false;
}

void Pool::loadPresetNumberButtonPushed(int button)
{
    m_loadPresetPending = true;
    const QString name = PresetManager::instance()->presetOfButton(button);
    if (name.isEmpty()) {
        unwind(m_confirmLoadPreset);
        m_presetWarning->setButton(button);
        m_presetWarning->showMe();
    } else {
        unwind(m_presetWarning);
        m_confirmLoadPreset->setTitle(QStringLiteral("Load preset")); // a row may have given it another
        m_confirmLoadPreset->setPresetName(name);
        m_confirmLoadPreset->showMe();
    }
}

void Pool::loadPresetTakePressed(int) { loadPresetLeaveMode(); }

void Pool::loadPresetLeaveMode()
{
    unwind(m_presetWarning, m_confirmLoadPreset, m_loadPreset);
    m_loadPresetPending = false;
}

void Pool::loadPresetTimeout()
{
    if (std::exchange(m_loadPresetPending, false))
        unwind(m_presetWarning, m_confirmLoadPreset);
}

void Pool::savePresetButtonPushed()
{
    unwind(m_presetWarning, m_confirmLoadPreset, m_loadPreset, m_confirmSavePreset);
    m_savePreset->showMe();
    m_savePresetPending = false;
}

void Pool::savePresetNumberButtonPushed(int button)
{
    m_savePresetPending = true;
    const PresetManager *presets = PresetManager::instance();
    m_confirmSavePreset->setTitle(QStringLiteral("Save preset"));
    m_confirmSavePreset->setPreset(presets->presetOfButton(button), presets->buttonHasExistingPreset(button), button);
    m_confirmSavePreset->showMe();
}

void Pool::savePresetTakePressed(int) { savePresetLeaveMode(); }

void Pool::savePresetLeaveMode()
{
    unwind(m_confirmSavePreset, m_savePreset);
    m_savePresetPending = false;
}

void Pool::savePresetTimeout()
{
    if (std::exchange(m_savePresetPending, false))
        unwind(m_confirmSavePreset);
}

void Pool::propertyChanged(const QString &property, const QString &value)
{
    if (property != m_lcdMessage.path() || value.isEmpty())
        return;
    m_noticeTimer.start();
    m_noticeLabel->setText(fittedMessage(value, *m_noticeLabel));
    // Its words in as few lines as fit, where the label's own size hint would take as narrow a column as it may.
    const int line = m_noticeLabel->fontMetrics().size(Qt::TextExpandTabs, m_noticeLabel->text()).width();
    const int width = std::clamp(line + noticeEdges, m_noticeLabel->minimumWidth(), m_noticeLabel->maximumWidth());
    m_noticeLabel->resize(width, m_noticeLabel->heightForWidth(width));
    m_noticeLabel->move((Screen::wholeLcd.width() - m_noticeLabel->width()) / 2,
        (Screen::wholeLcd.height() - m_noticeLabel->height()) / 2);
    m_noticeLabel->raise();
    m_noticeLabel->show();
}
