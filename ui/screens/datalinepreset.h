#pragma once

#include "ui/dataline.h"
#include "ui/styledlabel.h"

/// A row of a preset list, with a badge that shows the number of the preset's button.
class DataLinePreset : public DataLine
{
    Q_OBJECT
public:
    explicit DataLinePreset(Screen *screen);

    /// Puts the empty badge into the row. Called once.
    void setup();
    /// @param number 0 for none.
    void setButton(int number);
    int button() const { return m_button; }

private:
    int m_button = 0;
    StyledLabel *m_badge; ///< The row's.
};
