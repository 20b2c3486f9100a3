#pragma once

#include "protocol/dt3property.h"
#include "ui/screendata.h"

#include <array>

class ScreenIoHealth;

/// All input and output boards. Has its rows when the frame has been identified.
class ScreenIoList : public ScreenData
{
    Q_OBJECT
public:
    explicit ScreenIoList(QWidget *parent);

private slots:
    void variantIdentified();

private:
    void addBoards(const char *caption, const char *port, int count, ScreenIoHealth *page);

    bool m_built = false;
};

/// The voltages and temperatures of the four ports of one board, those that its kinds of ports have.
class ScreenIoHealth : public ScreenData
{
    Q_OBJECT
public:
    explicit ScreenIoHealth(QWidget *parent);

    /// @param port the board: "/IB2".
    void setPort(const QString &port) override;

private slots:
    void variantIdentified();

private:
    static constexpr size_t railCount = 13;
    static constexpr size_t columnCount = 4;

    void showRails();

    std::array<std::array<Dt3Property, columnCount>, railCount> m_properties;
};
