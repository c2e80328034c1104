#pragma once

#include "export/ExportFile.h"

#include <QWidget>

#include <functional>

class QPushButton;

namespace nimbrelle {

class DataExchange;
class FormGroup;
class FormRow;
class KeptList;
class ProgressLine;
class ReadText;
class Theme;
class WordImport;

/// The group of the settings in which the learner takes the data along and brings it back. Its heading is the
/// page's.
class DataSection : public QWidget {
    Q_OBJECT

public:
    /// All of it outlives the section.
    struct Parts {
        const Theme &theme;
        DataExchange &exchange;
        WordImport &wordImport;
        /// The rows of other rooms, to stand below; the section takes them over. May be empty.
        std::function<QList<FormRow *>()> moreRows;
    };

    explicit DataSection(const Parts &parts, QWidget *parent = nullptr);

private:
    FormRow *makeExport();
    FormRow *makeBackup();
    FormRow *makeKept();
    FormRow *makePlan();
    FormRow *makeWords();
    FormRow *makeMessageRow();
    QPushButton *makeExportButton(const QString &name, const QString &text, ExportKind kind,
        const QString &title, const QString &filter);
    void refresh();
    void refreshWords();

    const Parts m_parts;
    QList<QPushButton *> m_starters; ///< disabled while work is under way
    KeptList *m_kept = nullptr;
    FormRow *m_planRow = nullptr;
    ReadText *m_plan = nullptr;
    QPushButton *m_bringBack = nullptr;
    QPushButton *m_dropBackup = nullptr;
    FormRow *m_messageRow = nullptr;
    QWidget *m_message = nullptr;
    ProgressLine *m_progress = nullptr;
    ReadText *m_wordStatus = nullptr;
    QPushButton *m_pause = nullptr;
    QPushButton *m_cancel = nullptr;
};

} // namespace nimbrelle
