#include "export/views/DataSection.h"

#include "export/DataExchange.h"
#include "export/WordImport.h"
#include "export/views/FileQuestion.h"
#include "export/views/KeptList.h"
#include "widgets/FlowLayout.h"
#include "widgets/Form.h"
#include "widgets/Layouts.h"
#include "widgets/ProgressLine.h"
#include "widgets/ReadText.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

const auto aboutExport = u"CSV 用表格软件打开。给 Anki 的在它的「文件 → "
                         u"导入」里选：卡片要先建一个有七个字段的笔记类型，填空用它自带的填空题。"
                         "以后再导入只会更新，不会重复。"_s;
const auto aboutBackup = u"单词、笔记、学习记录、教练对话和设置，都在一个文件里；API key 和同步密码不在里面。"
                         "导入时和现有的合在一起，不会覆盖。"_s;
const auto aboutKept = u"每天第一次同步前、每次导入前，自动在这台电脑上留一份，留七天的。"
                       "恢复时和现有的合在一起，不会覆盖。"_s;
const auto aboutWords = u"每行一个词的文本，或者 CSV 表格。挨个查好存进生词本，已保存的词不动。"_s;

QWidget *rowOf(const Theme &theme, const QList<QPushButton *> &buttons)
{
    auto *holder = new QWidget;
    auto *layout = new FlowLayout(theme.points(8), theme.points(8), holder);
    layout->setContentsMargins(0, theme.points(6), 0, theme.points(2));
    for (QPushButton *button : buttons)
        layout->addWidget(button);
    return holder;
}

void showText(ReadText &text, const QString &plain)
{
    if (text.toPlainText() != plain)
        text.setPlain(plain);
    text.setAccessibleName(plain);
    text.setVisible(!plain.isEmpty());
}

void setText(QPushButton &button, const QString &text)
{
    button.setText(text);
    button.setAccessibleName(text);
}

} // namespace

DataSection::DataSection(const Parts &parts, QWidget *parent) : QWidget(parent), m_parts(parts)
{
    setObjectName(u"dataSection"_s);
    auto *group = new FormGroup(parts.theme);
    for (FormRow *row : {makeExport(), makeBackup(), makeKept(), makePlan(), makeWords(), makeMessageRow()})
        group->add(row);
    if (parts.moreRows) {
        for (FormRow *row : parts.moreRows())
            group->add(row);
    }
    bareLayout<QVBoxLayout>(this, 0)->addWidget(group);
    connect(&parts.exchange, &DataExchange::changed, this, &DataSection::refresh);
    connect(&parts.wordImport, &WordImport::changed, this, &DataSection::refreshWords);
    refresh();
    refreshWords();
}

QPushButton *DataSection::makeExportButton(
    const QString &name, const QString &text, ExportKind kind, const QString &title, const QString &filter)
{
    auto *button = makeButton(m_parts.theme, name, text, {});
    DataExchange &exchange = m_parts.exchange;
    connect(button, &QPushButton::clicked, this, [this, &exchange, kind, title, filter] {
        const FileQuestion question{.purpose = FileQuestion::Purpose::save,
            .title = title,
            .filter = filter,
            .name = exchange.suggestedName(kind)};
        askForFile(
            *this, question, [&exchange, kind](const QString &file) { exchange.exportTo(kind, file); });
    });
    m_starters.append(button);
    return button;
}

FormRow *DataSection::makeExport()
{
    auto *row = new FormRow(m_parts.theme, u"导出生词"_s, nullptr);
    row->addNote(u"exportNote"_s, aboutExport);
    row->add(rowOf(m_parts.theme,
        {makeExportButton(
             u"exportCsv"_s, u"CSV 表格"_s, ExportKind::csv, u"导出 CSV 表格"_s, u"CSV 表格 (*.csv)"_s),
            makeExportButton(
                u"exportAnki"_s, u"Anki 卡片"_s, ExportKind::anki, u"导出给 Anki"_s, u"Anki 文本 (*.txt)"_s),
            makeExportButton(u"exportAnkiCloze"_s, u"Anki 填空"_s, ExportKind::ankiCloze,
                u"导出给 Anki（填空题）"_s, u"Anki 文本 (*.txt)"_s)}));
    return row;
}

FormRow *DataSection::makeBackup()
{
    auto *row = new FormRow(m_parts.theme, u"备份"_s, nullptr);
    row->addNote(u"backupNote"_s, aboutBackup);
    auto *save = makeExportButton(
        u"exportBackup"_s, u"导出备份"_s, ExportKind::backup, u"导出备份"_s, u"Nimbrelle 备份 (*.zip)"_s);
    auto *open = makeButton(m_parts.theme, u"importBackup"_s, u"导入备份"_s, {});
    m_starters.append(open);
    row->add(rowOf(m_parts.theme, {save, open}));
    connect(open, &QPushButton::clicked, this, [this] {
        DataExchange &exchange = m_parts.exchange;
        askForFile(*this, {.title = u"导入备份"_s, .filter = u"Nimbrelle 备份 (*.zip)"_s, .name = {}},
            [&exchange](const QString &file) { exchange.readBackup(file); });
    });
    return row;
}

FormRow *DataSection::makeKept()
{
    auto *row = new FormRow(m_parts.theme, u"自动备份"_s, nullptr);
    row->addNote(u"keptNote"_s, aboutKept);
    m_kept = new KeptList(m_parts.theme);
    row->add(m_kept);
    connect(m_kept, &KeptList::chosen, this,
        [this](const KeptBackup &backup) { m_parts.exchange.readKept(backup); });
    return row;
}

FormRow *DataSection::makePlan()
{
    m_planRow = new FormRow(m_parts.theme);
    m_plan = m_planRow->addNote(u"backupPlan"_s, {}, Tone::ink);
    m_bringBack = makeButton(m_parts.theme, u"bringBack"_s, u"合并进来"_s, {});
    m_dropBackup = makeButton(m_parts.theme, u"dropBackup"_s, u"不导入"_s, {});
    m_planRow->add(rowOf(m_parts.theme, {m_bringBack, m_dropBackup}));
    connect(m_bringBack, &QPushButton::clicked, this, [this] { m_parts.exchange.bringBack(); });
    connect(m_dropBackup, &QPushButton::clicked, this, [this] { m_parts.exchange.dropBackup(); });
    return m_planRow;
}

FormRow *DataSection::makeWords()
{
    auto *row = new FormRow(m_parts.theme, u"导入词表"_s, nullptr);
    row->addNote(u"wordsNote"_s, aboutWords);
    m_wordStatus = row->addNote(u"wordStatus"_s, {}, Tone::ink);
    m_progress = new ProgressLine(m_parts.theme, u"wordProgress"_s);
    row->add(m_progress);
    auto *open = makeButton(m_parts.theme, u"importWords"_s, u"选择词表"_s, {});
    m_starters.append(open);
    m_pause = makeButton(m_parts.theme, u"pauseWords"_s, u"暂停"_s, {});
    m_cancel = makeButton(m_parts.theme, u"cancelWords"_s, u"取消"_s, {});
    row->add(rowOf(m_parts.theme, {open, m_pause, m_cancel}));
    connect(open, &QPushButton::clicked, this, [this] {
        DataExchange &exchange = m_parts.exchange;
        askForFile(*this,
            {.title = u"导入词表"_s, .filter = u"词表 (*.txt *.csv *.tsv);;所有文件 (*)"_s, .name = {}},
            [&exchange](const QString &file) { exchange.importWords(file); });
    });
    connect(m_pause, &QPushButton::clicked, this, [this] { m_parts.wordImport.toggle(); });
    connect(m_cancel, &QPushButton::clicked, this, [this] { m_parts.wordImport.cancel(); });
    return row;
}

FormRow *DataSection::makeMessageRow()
{
    m_messageRow = new FormRow(m_parts.theme);
    m_message = new QWidget;
    m_message->setObjectName(u"dataResult"_s);
    bareLayout<QVBoxLayout>(m_message, 0);
    m_messageRow->add(m_message);
    return m_messageRow;
}

void DataSection::refresh()
{
    const DataExchange &exchange = m_parts.exchange;
    for (QPushButton *button : std::as_const(m_starters))
        setEnabledKeepingFocus(*button, !exchange.isBusy());
    m_kept->setBackups(exchange.kept(), exchange.localNow());
    m_kept->setStartable(!exchange.isBusy());
    const auto &plan = exchange.plan();
    showText(*m_plan, plan ? plan->lines().join(u'\n') : QString());
    const bool isUseful = plan && !plan->changesNothing();
    m_bringBack->setVisible(isUseful);
    setText(*m_dropBackup, isUseful ? u"不导入"_s : u"知道了"_s);
    m_planRow->setVisible(plan.has_value());

    qDeleteAll(m_message->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
    const auto &message = exchange.message();
    if (message)
        m_message->layout()->addWidget(makeMessage(m_parts.theme, u"dataMessage"_s,
            message->isGood ? Icon::checkCircleFill : Icon::xCircleFill, message->text,
            message->isGood ? Tone::good : Tone::bad));
    m_messageRow->setVisible(message.has_value());
}

void DataSection::refreshWords()
{
    const WordImport &import = m_parts.wordImport;
    showText(*m_wordStatus, import.statusText());
    const bool isPending = import.state() != WordImport::State::idle;
    m_progress->setVisible(isPending);
    m_progress->setProgress(import.settledCount(), import.total(), import.statusText());
    setText(*m_pause, import.toggleLabel());
    m_pause->setVisible(isPending);
    m_cancel->setVisible(isPending);
}

} // namespace nimbrelle
