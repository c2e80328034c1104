#include "sync/BundleForm.h"

#include "frame/RecordCodec.h"

#include <QCryptographicHash>

namespace nimbrelle::BundleForm {

QByteArray json(const SyncBundle &bundle)
{
    return encode(bundle, TextForm::canonical).value_or(QByteArray());
}

QString hash(const SyncBundle &bundle)
{
    return hashOfJson(json(bundle));
}

QString hashOfJson(const QByteArray &json)
{
    return QString::fromLatin1(QCryptographicHash::hash(json, QCryptographicHash::Sha256).toHex());
}

SyncBundle normalized(const SyncBundle &bundle)
{
    return decode<SyncBundle>(json(bundle)).value_or(bundle);
}

} // namespace nimbrelle::BundleForm
