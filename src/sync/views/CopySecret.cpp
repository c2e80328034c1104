#include "sync/views/CopySecret.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace nimbrelle {

void copySecret(const QString &text)
{
    auto *data = new QMimeData;
    data->setText(text);
    // What clipboard managers have agreed on, whatever the desktop.
    data->setData(u"x-kde-passwordManagerHint"_s, "secret");
    QGuiApplication::clipboard()->setMimeData(data);
}

} // namespace nimbrelle
