#pragma once

#include <QWidget>

/// The LCD: the frameless 320 x 240 top-level widget that everything else is shown in.
class Pool : public QWidget
{
    Q_OBJECT
public:
    /// The one of this process. Made on first use; goes with the application object.
    static Pool *instance();

private:
    Pool();
};
