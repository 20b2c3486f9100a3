#pragma once

#include "ui/itemwheellistlabel.h"
#include "ui/screendata.h"

/// A page with a wheel of the EDIDs of some banks, and what is in the one that it shows. The base of the three.
///
/// While it is the visible screen, the node of that EDID is open, and no other.
class EdidBrowser : public ScreenData
{
    Q_OBJECT
public:
    void setActive(bool active) override;
    void nodeReceived(const QString &node) override;

protected:
    explicit EdidBrowser(QWidget *parent);

    /// Paths of the banks that the wheels are filled from, in the order they are asked for.
    virtual QStringList banks() const = 0;
    /// Whether EDIDs of a bank go to the wheel of sources. @param bank its letter.
    virtual bool isSource(QChar bank) const = 0;
    /// An EDID of another bank.
    virtual void addDestination(const QString &name);
    /// The node of an EDID among the sources.
    virtual QString sourcePath(const QString &name) const;

    /// The wheel's owner is the page.
    ItemWheelListLabel *addWheelRow(const QString &caption);
    ItemWheelListLabel *source() const { return m_source; }

    void forgetValues() override;

private:
    void scrolled();
    void selectEdid(const QString &path);

    ItemWheelListLabel *m_source;
    QString m_edid; ///< The node that the rows show; empty until there is one.
    bool m_active = false;
};

/// Looks at the EDIDs of one bank.
class ScreenEdidViewer : public EdidBrowser
{
    Q_OBJECT
public:
    explicit ScreenEdidViewer(QWidget *parent);

    void openedFrom(const DataLine &row) override;
    /// The bank to look at: "/EDID/F".
    void bindProperty(const Dt3Property *property);

protected:
    QStringList banks() const override { return {m_bank}; }
    bool isSource(QChar) const override { return true; }
    QString sourcePath(const QString &name) const override;

private:
    QString m_bank;
};

/// The base of the two that copy an EDID to another place.
class EdidCopier : public EdidBrowser
{
    Q_OBJECT
public:
    void setActive(bool active) override;

protected:
    explicit EdidCopier(QWidget *parent);

    void savePressed() override;
    void addDestination(const QString &name) override { m_destination->addOption(name); }
    /// Both are named.
    virtual void copy(const QString &source, const QString &destination) = 0;
    ItemWheelListLabel *destination() const { return m_destination; }

private:
    ItemWheelListLabel *m_destination;
};

/// Switches an EDID onto an input, or onto all.
class ScreenEdidSwitcher : public EdidCopier
{
    Q_OBJECT
public:
    explicit ScreenEdidSwitcher(QWidget *parent);

protected:
    QStringList banks() const override;
    bool isSource(QChar bank) const override;
    void addDestination(const QString &name) override;
    void copy(const QString &source, const QString &destination) override;
};

/// Saves the EDID of a display that was attached.
class ScreenEdidSaver : public EdidCopier
{
    Q_OBJECT
public:
    explicit ScreenEdidSaver(QWidget *parent)
        : EdidCopier(parent)
    {
    }

protected:
    QStringList banks() const override;
    bool isSource(QChar bank) const override;
    void addDestination(const QString &name) override;
    void copy(const QString &source, const QString &destination) override;
};
