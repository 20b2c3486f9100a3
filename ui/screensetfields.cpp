#include "ui/screensetfields.h"

#include "ui/styles.h"

#include <QGridLayout>

ScreenSetFields::Wheel::Wheel(QWidget *parent, const Field &field)
    : label(parent, field.minimum, field.maximum, false, field.zeroPad, {})
    , group(parent, &label)
{
    label.setFixedSize(field.width, 35);
}

ScreenSetFields::ScreenSetFields(QWidget *parent, std::initializer_list<Field> fields, const QString &separator)
    : ScreenEditor(parent)
    , m_separator(separator)
{
    auto *grid = new QGridLayout; // the content layout's
    grid->setVerticalSpacing(8);
    grid->setHorizontalSpacing(3);
    int column = 0;
    for (const Field &field : fields) {
        if (column > 0) {
            auto *label = new StyledLabel(this);
            label->setSheet(Style::separator);
            label->setAlignment(Qt::AlignCenter);
            label->setText(separator);
            grid->addWidget(label, 1, column++);
        }
        Wheel &wheel = *m_wheels.emplace_back(std::make_unique<Wheel>(this, field));
        grid->addWidget(&wheel.group.up, 0, column);
        grid->addWidget(&wheel.label, 1, column);
        grid->addWidget(&wheel.group.down, 2, column++);
        navigator().insert(saveCollection(), &wheel.group.collection);
    }
    contentLayout()->addStretch();
    contentLayout()->addLayout(grid);
    contentLayout()->addStretch();
    stackContents(Contents::Centred);
    showSaveButton();
    showBackButton();
}

void ScreenSetFields::showFields(const QString &text)
{
    const QStringList parts = text.split(m_separator);
    if (parts.size() != static_cast<qsizetype>(m_wheels.size()))
        return;
    for (qsizetype i = 0; i < parts.size(); ++i)
        m_wheels[static_cast<size_t>(i)]->label.setValue(parts[i]);
}

QString ScreenSetFields::fields() const
{
    QStringList texts;
    for (const auto &wheel : m_wheels)
        texts.append(wheel->label.text());
    return texts.join(m_separator);
}

void ScreenSetFields::save(const QString &value)
{
    write(value);
    hideMe();
}
