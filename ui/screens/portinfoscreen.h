#pragma once

#include "ui/screendata.h"

#include <optional>

class Dt3Property;

/// A page of one port whose rows depend on what kind of port that is. Opened for another port, it has none of the rows
/// that depend on it until it has been told.
class PortInfoScreen : public ScreenData
{
    Q_OBJECT
public:
    /// @param subject of the title, as "Status" in "Port 12 Status"; without one the title is the row's that opens it.
    explicit PortInfoScreen(QWidget *parent, const QString &subject = {});

    void setPort(const QString &port) override;
    /// An empty text leaves what was known. @param portType names what the port has, as in "HDMI_AUDIO".
    /// @param portVersion of its hardware, as in "V20".
    void setPortInfo(const QString &portType, const QString &portVersion);

protected:
    /// What makes a page show a row; several may hold.
    enum Kind : unsigned {
        Always = 0,
        Never = 1U << 0,
        HdmiV1 = 1U << 1, ///< HDMI up to 1.4.
        HdmiV2 = 1U << 2,
        DisplayPort = 1U << 3,
        AnalogAudio = 1U << 4,
        NoAnalogAudio = 1U << 5,
        HdmiAndAnalogAudio = 1U << 6,
        DisplayPortAndAnalogAudio = 1U << 7,
    };

    /// Adds the rows, then takes note of when to show each. Rows that were added otherwise are shown always.
    struct PortRow
    {
        Row row;
        unsigned kinds; ///< Shown where one of them holds.
    };
    void addPortRows(std::initializer_list<PortRow> rows);

    void forgetValues() override;
    /// The kind of port is another one.
    virtual void showRows();
    const QString &portType() const { return m_portType; }

private:
    unsigned kindsOfPort();

    const QString m_subject;
    QString m_portType, m_portVersion;
    unsigned m_audioMode = 0; ///< Stays where a port ceases to have analog audio.
    QList<unsigned> m_rowKinds;
};

/// News of what kind of port it is; one of the two is empty.
struct PortInfo
{
    QString type, version;
};

/// What a value says about the kind of port, or nothing. @param portNode the ".*" of the port that is on the page; late
/// answers of another one say nothing.
std::optional<PortInfo> portInfo(const Dt3Property &portNode, const QString &property, const QString &value);
