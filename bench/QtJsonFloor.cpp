#include "QtJsonFloor.h"

#include "frame/RecordCodec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace nimbrelle::bench {

namespace {

std::optional<QString> text(const QJsonObject &object, const char *key)
{
    const QJsonValue value = object.value(QLatin1StringView(key));
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

Timestamp time(const QJsonObject &object, const char *key)
{
    return timestampFromIso(object.value(QLatin1StringView(key)).toString()).value_or(Timestamp{});
}

QUuid id(const QJsonObject &object)
{
    return QUuid::fromString(object.value(QLatin1StringView("id")).toString());
}

QStringList texts(const QJsonObject &object, const char *key)
{
    QStringList list;
    for (const QJsonValue &value : object.value(QLatin1StringView(key)).toArray())
        list.append(value.toString());
    return list;
}

Example exampleOf(const QJsonObject &object)
{
    return {id(object), text(object, "sentence").value_or(QString()),
        text(object, "sentenceZh").value_or(QString()), text(object, "meaningZh").value_or(QString()),
        object.value(QLatin1StringView("isGenerated")).toBool(), text(object, "sourceApp"),
        text(object, "sourceURL"), text(object, "sourceTitle"), time(object, "addedAt")};
}

AINote noteOf(const QJsonObject &object)
{
    return {id(object), text(object, "question").value_or(QString()),
        text(object, "answer").value_or(QString()), text(object, "original").value_or(QString()),
        text(object, "translation"), text(object, "sourceApp"), text(object, "sourceURL"),
        text(object, "sourceTitle"), time(object, "addedAt")};
}

FormRecord formOf(const QJsonObject &object)
{
    return {caseFrom<FormKind>(text(object, "kind").value_or(QString())).value_or(FormKind::base),
        text(object, "form").value_or(QString()), time(object, "firstSeenAt"),
        object.value(QLatin1StringView("count")).toInteger(), text(object, "sentence")};
}

ReviewState reviewOf(const QJsonObject &object)
{
    return {object.value(QLatin1StringView("stability")).toDouble(),
        object.value(QLatin1StringView("difficulty")).toDouble(), time(object, "due"),
        time(object, "lastReview"), object.value(QLatin1StringView("reps")).toInteger(),
        object.value(QLatin1StringView("lapses")).toInteger(),
        object.value(QLatin1StringView("level")).toInteger()};
}

template <class Element>
QList<Element> list(const QJsonObject &object, const char *key, Element (*read)(const QJsonObject &))
{
    QList<Element> result;
    for (const QJsonValue &value : object.value(QLatin1StringView(key)).toArray())
        result.append(read(value.toObject()));
    return result;
}

WordEntry wordOf(const QJsonObject &object)
{
    WordEntry word;
    word.id = id(object);
    word.headword = text(object, "headword").value_or(QString());
    word.phonetic = text(object, "phonetic").value_or(QString());
    word.pos = text(object, "pos").value_or(QString());
    word.meaningZh = text(object, "meaningZh").value_or(QString());
    word.definitionEn = text(object, "definitionEn").value_or(QString());
    word.register_ = registerFrom(text(object, "register"));
    word.registerNoteZh = text(object, "registerNoteZh").value_or(QString());
    word.createdAt = time(object, "createdAt");
    word.lookupCount = object.value(QLatin1StringView("lookupCount")).toInteger();
    word.lastLookupAt = time(object, "lastLookupAt");
    word.examples = list(object, "examples", exampleOf);
    word.notes = list(object, "notes", noteOf);
    word.forms = list(object, "forms", formOf);
    const QJsonObject inflections = object.value(QLatin1StringView("inflections")).toObject();
    word.inflections.emplace();
    for (auto it = inflections.begin(); it != inflections.end(); ++it)
        word.inflections->insert(it.key(), it.value().toString());
    word.familyRoot = text(object, "familyRoot");
    word.encounterDays = texts(object, "encounterDays");
    word.sourceKeys = texts(object, "sourceKeys");
    if (object.contains(QLatin1StringView("review")))
        word.review = reviewOf(object.value(QLatin1StringView("review")).toObject());
    word.stage = caseFrom<Stage>(text(object, "stage").value_or(QString()));
    word.stateAt = time(object, "stateAt");
    return word;
}

} // namespace

QList<WordEntry> wordsByQtJson(const QByteArray &json)
{
    QList<WordEntry> words;
    for (const QJsonValue &value : QJsonDocument::fromJson(json).array())
        words.append(wordOf(value.toObject()));
    return words;
}

} // namespace nimbrelle::bench
