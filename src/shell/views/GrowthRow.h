#pragma once

#include "widgets/Form.h"

class QPushButton;

namespace nimbrelle {

class GrowthGenerator;

/// The settings' row about the growth archive: one button that installs or removes its generator.
class GrowthRow : public FormRow {
    Q_OBJECT

public:
    /// Both outlive it.
    GrowthRow(const Theme &theme, const GrowthGenerator &generator);

protected:
    void showEvent(QShowEvent *event) override;

private:
    GrowthRow(const Theme &theme, const GrowthGenerator &generator, QPushButton *button);
    void toggle();
    void refresh();
    void tell(const QString &problem);

    const GrowthGenerator &m_generator;
    QPushButton *m_button;
    ReadText *m_note;
    ReadText *m_problem;
};

} // namespace nimbrelle
