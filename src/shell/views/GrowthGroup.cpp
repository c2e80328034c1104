#include "shell/views/GrowthGroup.h"

#include "frame/Failure.h"
#include "shell/GrowthGenerator.h"
#include "widgets/Form.h"
#include "widgets/ReadText.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace nimbrelle {

using namespace Qt::StringLiterals;

GrowthGroup::GrowthGroup(const Theme &theme, const GrowthGenerator &generator, QWidget *parent)
    : QWidget(parent), m_generator(generator), m_button(makeButton(theme, u"toggleGrowthArchive"_s, {}, {}))
{
    auto *row = new FormRow(theme, u"成长档案"_s, m_button);
    m_note = row->addNote(u"growthNote"_s, {});
    m_problem = row->addNote(u"growthProblem"_s, {}, Tone::bad);
    auto *group = new FormGroup(theme);
    group->add(row);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(group);
    connect(m_button, &QPushButton::clicked, this, &GrowthGroup::toggle);
    tell({});
    refresh();
}

void GrowthGroup::showEvent(QShowEvent *)
{
    refresh();
}

void GrowthGroup::toggle()
{
    tell({});
    try {
        m_generator.toggle();
    } catch (const Failure &failure) {
        tell(failure.text());
    }
    refresh();
}

void GrowthGroup::refresh()
{
    const GrowthGenerator::State state = m_generator.state();
    const QString label = GrowthGenerator::buttonText(state);
    m_button->setText(label);
    m_button->setAccessibleName(label + u"成长档案"_s);
    m_note->setPlain(m_generator.note(state));
}

void GrowthGroup::tell(const QString &problem)
{
    m_problem->setPlain(problem);
    m_problem->setAccessibleName(problem);
    m_problem->setVisible(!problem.isEmpty());
}

} // namespace nimbrelle
