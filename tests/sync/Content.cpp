#include "sync/Content.h"

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

class Collector {
public:
    explicit Collector(const QSet<QUuid> &dead) : m_dead(dead) { }

    void add(const QStringList &parts) { m_content.insert(parts.join(u'\n')); }
    void add(const QUuid &id, const QStringList &parts)
    {
        if (!m_dead.contains(id))
            add(parts);
    }
    bool isDead(const QUuid &id) const { return m_dead.contains(id); }
    const QSet<QString> &content() const { return m_content; }

private:
    const QSet<QUuid> &m_dead;
    QSet<QString> m_content;
};

QString number(auto value)
{
    return QString::number(static_cast<int>(value));
}

void collect(Collector &collector, const WordEntry &word)
{
    const QString key = word.headword.toLower();
    collector.add({u"word"_s, key});
    for (const Example &example : word.examples)
        collector.add(example.id, {u"example"_s, key, example.sentence});
    for (const AINote &note : word.notes.value_or(QList<AINote>()))
        collector.add(note.id, {u"note"_s, key, note.question, note.answer});
    for (const QString &source : word.sourceKeys.value_or(QStringList()))
        collector.add({u"source"_s, key, source});
    for (const QString &day : word.encounterDays.value_or(QStringList()))
        collector.add({u"day"_s, key, day});
    for (const FormRecord &form : word.forms.value_or(QList<FormRecord>()))
        collector.add({u"form"_s, key, number(form.kind)});
}

} // namespace

QSet<QString> contentOf(const SyncBundle &bundle, const QSet<QUuid> &exceptDead)
{
    Collector collector(exceptDead);
    for (const WordEntry &word : bundle.words) {
        if (!collector.isDead(word.id))
            collect(collector, word);
    }
    for (const AINote &note : bundle.notes)
        collector.add(note.id, {u"free note"_s, note.question, note.answer});
    for (const GrammarEncounter &met : bundle.grammar)
        collector.add(met.id, {u"grammar"_s, number(met.point), met.sentence});
    for (const AffixEncounter &met : bundle.affixes)
        collector.add(met.id, {u"affix"_s, number(met.affix), met.headword.toLower()});
    for (const QString &line : bundle.log)
        collector.add({line});
    return collector.content();
}

QString wordOf(const QString &content)
{
    const QStringList parts = content.split(u'\n');
    const QStringList kinds{u"word"_s, u"example"_s, u"note"_s, u"source"_s, u"day"_s, u"form"_s};
    return kinds.contains(parts.first()) ? u"word\n"_s + parts[1] : QString();
}

} // namespace nimbrelle
