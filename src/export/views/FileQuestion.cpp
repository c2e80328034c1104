#include "export/views/FileQuestion.h"

#include <QFileDialog>
#include <QStandardPaths>

namespace nimbrelle {

using namespace Qt::StringLiterals;

void askForFile(
    QWidget &owner, const FileQuestion &question, const std::function<void(const QString &file)> &then)
{
    const bool isSave = question.purpose == FileQuestion::Purpose::save;
    auto *dialog = new QFileDialog(owner.window(), question.title,
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), question.filter);
    dialog->setObjectName(u"fileQuestion"_s);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(isSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog->setFileMode(isSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (isSave) {
        dialog->setDefaultSuffix(question.name.section(u'.', -1));
        dialog->selectFile(question.name);
    }
    QObject::connect(dialog, &QFileDialog::fileSelected, &owner, then);
    dialog->open();
}

} // namespace nimbrelle
