#include "settings/views/SettingsView.h"

#include "notebook/WordStore.h"
#include "settings/SettingsText.h"
#include "settings/UnwrittenText.h"
#include "settings/views/SettingsSections.h"
#include "widgets/ReadText.h"
#include "widgets/ScrollAnchor.h"
#include "widgets/TabOrder.h"

#include <QDir>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

/// A note without a text is not there.
void showNote(ReadText &note, const QString &text)
{
    if (note.toPlainText() != text)
        note.setPlain(text);
    note.setAccessibleName(text);
    note.setVisible(!text.isEmpty());
}

constexpr double sideMargin = 24;
constexpr double topMargin = 20;
constexpr double footMargin = 28;
constexpr double sectionGap = 20;
constexpr double widestColumn = 640;
constexpr std::chrono::milliseconds lookEvery{1500};

} // namespace

SettingsView::SettingsView(const SettingsParts &parts, QWidget *parent)
    : QWidget(parent)
    , m_parts(parts)
    , m_scroll(new QScrollArea)
    , m_sync(parts.makeSyncGroup())
    , m_recheck(parts.clock, lookEvery)
{
    setObjectName(u"settings"_s);
    m_sync->setParent(this);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_scroll);
    connect(&parts.theme, &Theme::changed, this, &SettingsView::rebuild);
    connect(&m_recheck, &Recheck::due, this, &SettingsView::look);
    rebuild();
}

void SettingsView::refreshOffers()
{
    m_offers->refresh();
}

void SettingsView::showEvent(QShowEvent *)
{
    look();
    m_recheck.start();
}

void SettingsView::hideEvent(QHideEvent *)
{
    m_recheck.stop();
}

void SettingsView::paintEvent(QPaintEvent *)
{
    if (m_parts.applications.isKnown())
        return;
    for (ApplicationSection *section : {m_exclusions, m_noCopy}) // later, not to hold up the first picture
        QTimer::singleShot(0, section, &ApplicationSection::findNames);
}

/// Its sections put themselves together anew, each at its own time.
bool SettingsView::focusNextPrevChild(bool next)
{
    if (QWidget *page = m_scroll->widget()) // none while it is made anew
        orderTabs(*page);
    return QWidget::focusNextPrevChild(next);
}

void SettingsView::look()
{
    m_permissions->refresh();
    m_start->refresh();
    m_offers->refresh();
    showFileNotes();
}

void SettingsView::showFileNotes()
{
    showNote(*m_keptFiles, SettingsText::keptFilesNote(m_parts.keptFiles()));
    showNote(*m_unwritten, UnwrittenText::note(m_parts.writer.unwritten(), QDir::homePath()));
}

/// In new colours; the user stays at the same place.
void SettingsView::rebuild()
{
    const int place = m_scroll->verticalScrollBar()->value();
    const QWidget *focus = focusWidget();
    const QString focused = focus && focus->hasFocus() ? focus->objectName() : QString();
    m_sync->setParent(nullptr);
    delete m_scroll->takeWidget();
    m_scroll->setWidget(makePage());
    new ScrollAnchor(*m_scroll, m_sections);
    m_sync->show();
    m_scroll->viewport()->setAutoFillBackground(false);
    m_scroll->widget()->setAutoFillBackground(false);
    m_scroll->verticalScrollBar()->setValue(place);
    if (QWidget *next = focused.isEmpty() ? nullptr : findChild<QWidget *>(focused))
        next->setFocus(Qt::OtherFocusReason);
}

QWidget *SettingsView::makePage()
{
    const Theme &theme = m_parts.theme;
    auto *page = new QWidget;
    page->setProperty("kind", u"scrolled"_s);
    auto *sides = new QHBoxLayout(page);
    const int side = theme.points(sideMargin);
    sides->setContentsMargins(side, theme.points(topMargin), side, theme.points(footMargin));
    auto *middle = new QWidget;
    middle->setMaximumWidth(theme.points(widestColumn));
    sides->addWidget(middle, 1);
    auto *column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(theme.points(sectionGap));

    m_offers = new OfferRow(m_parts);
    connect(m_offers, &OfferRow::chosen, this, &SettingsView::offerChosen);
    m_permissions = new PermissionSection(m_parts);
    m_start = new StartSection(m_parts);
    m_exclusions = makeExclusionSection(m_parts);
    m_noCopy = makeNoCopySection(m_parts);
    m_sections = {m_offers, m_permissions, makeKeySection(m_parts, m_isAdvancedOpen), m_start,
        makeLookupSection(m_parts), makeStudySection(m_parts), makeNotebookSection(),
        makeSection(theme, u"同步"_s, m_sync), m_exclusions, m_noCopy,
        makeSection(theme, u"数据"_s, m_parts.makeDataGroup())};
    for (QWidget *section : std::as_const(m_sections))
        column->addWidget(section);
    column->addStretch();
    return page;
}

QWidget *SettingsView::makeNotebookSection()
{
    const Theme &theme = m_parts.theme;
    auto *add = makeButton(theme, u"addWord"_s, u"手动添加"_s, {});
    auto *open = makeButton(theme, u"openWords"_s, u"打开生词本"_s, {});
    connect(add, &QPushButton::clicked, this, &SettingsView::addWordRequested);
    connect(open, &QPushButton::clicked, this, &SettingsView::wordsRequested);
    auto *row = new FormRow(theme, {}, add);
    row->label()->setObjectName(u"wordCount"_s);
    row->line()->addWidget(open, 0, Qt::AlignTop);
    const auto show = [this, row] { row->setLabel(SettingsText::wordCount(m_parts.words.entries().size())); };
    // Queued, for the store is in the middle of a change.
    connect(&m_parts.words, &WordStore::changing, row, show, Qt::QueuedConnection);
    show();
    m_unwritten = row->addNote(u"unwrittenFiles"_s, {}, Tone::bad);
    m_keptFiles = row->addNote(u"keptFiles"_s, {}, Tone::bad);
    showFileNotes();
    auto *group = new FormGroup(theme);
    group->add(row);
    return makeSection(theme, u"生词本"_s, group);
}

} // namespace nimbrelle
