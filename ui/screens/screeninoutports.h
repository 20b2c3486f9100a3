#pragma once

#include "ui/screendata.h"

#include <array>

struct SharedScreens;

/// All inputs, or all outputs, with signs of what each of them has. Has its rows when the frame has been identified.
class ScreenInOutPorts : public ScreenData
{
    Q_OBJECT
public:
    /// @param shared borrowed, as long as the page lives.
    ScreenInOutPorts(QWidget *parent, bool input, const SharedScreens &shared);

protected:
    void updateValue(const QString &property, const QString &value) override;

private slots:
    void variantIdentified();

private:
    static constexpr int iconCount = 6;
    using Icons = std::array<StyledLabel *, iconCount>;

    void addPort(int number, bool audioOnly, Screen *page);
    void showStatus(const QString &status);

    const bool m_input;
    const SharedScreens &m_shared;
    QList<Icons> m_icons; ///< By row; the rows own them.
};
