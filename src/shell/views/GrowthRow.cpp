#include "shell/views/GrowthRow.h"

#include "frame/Failure.h"
#include "shell/GrowthGenerator.h"
#include "widgets/ReadText.h"

#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

GrowthRow::GrowthRow(const Theme &theme, const GrowthGenerator &generator)
    : GrowthRow(theme, generator, makeButton(theme, u"toggleGrowthArchive"_s, {}, {}))
{
}

GrowthRow::GrowthRow(const Theme &theme, const GrowthGenerator &generator, QPushButton *button)
    : FormRow(theme, u"成长档案"_s, button)
    , m_generator(generator)
    , m_button(button)
    , m_note(addNote(u"growthNote"_s, {}))
    , m_problem(addNote(u"growthProblem"_s, {}, Tone::bad))
{
    connect(m_button, &QPushButton::clicked, this, &GrowthRow::toggle);
    tell({});
    refresh();
}

void GrowthRow::showEvent(QShowEvent *)
{
    refresh();
}

void GrowthRow::toggle()
{
    tell({});
    try {
        m_generator.toggle();
    } catch (const Failure &failure) {
        tell(failure.text());
    }
    refresh();
}

void GrowthRow::refresh()
{
    const GrowthGenerator::State state = m_generator.state();
    const QString label = GrowthGenerator::buttonText(state);
    m_button->setText(label);
    m_button->setAccessibleName(label + u"成长档案"_s);
    m_note->setPlain(m_generator.note(state));
}

void GrowthRow::tell(const QString &problem)
{
    m_problem->setPlain(problem);
    m_problem->setAccessibleName(problem);
    m_problem->setVisible(!problem.isEmpty());
}

} // namespace nimbrelle
