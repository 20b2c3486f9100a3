#pragma once

#include "protocol/dt3sink.h"
#include "ui/screen.h"

class Dt3Property;

/// The base of the screens that edit a property: the one of the row that opened them.
class ScreenEditor : public Screen, public Dt3Sink
{
    Q_OBJECT
public:
    /// Borrowed until the next one is bound. Called before the screen is shown, and never with null.
    virtual void bindProperty(Dt3Property *property);
    void openedFrom(const DataLine &row) override;

protected:
    using Screen::Screen;

    // Of the bound property.
    const Dt3Property &edited() const { return *m_property; }
    bool isEdited(const QString &path) const;
    QString node() const;
    void fetch();
    /// @param caption as for setValue().
    void write(const QString &caption);

private:
    Dt3Property *m_property = nullptr;
};
