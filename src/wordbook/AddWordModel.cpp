#include "wordbook/AddWordModel.h"

#include "frame/ConfigStore.h"
#include "frame/Failure.h"
#include "frame/Text.h"
#include "notebook/PageSource.h"
#include "notebook/WordStore.h"

#include <QRegularExpression>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

bool hasChinese(const QString &text)
{
    static const QRegularExpression han(u"\\p{Han}"_s);
    return text.contains(han);
}

} // namespace

AddWordModel::AddWordModel(const ConfigStore &config, WordStore &words, AIClientFactory newClient)
    : m_config(config), m_words(words), m_newClient(std::move(newClient))
{
    // Queued, for the store is in the middle of a change.
    connect(&words, &WordStore::changing, this, &AddWordModel::changed, Qt::QueuedConnection);
}

AddWordModel::~AddWordModel() = default;

QString AddWordModel::lookupLabel() const
{
    return m_isLoading ? u"查询中…"_s : u"查询"_s;
}

QString AddWordModel::correction() const
{
    if (!m_result || !m_result->corrected.value_or(false))
        return {};
    return u"你输入的是「"_s + m_asked + u"」，正确写法是 "_s + m_result->explanation.headword;
}

bool AddWordModel::isKnown() const
{
    return m_result && m_words.findHeadword(m_result->explanation.headword);
}

bool AddWordModel::isSpelled() const
{
    const WordEntry *known = m_result ? m_words.findHeadword(m_result->explanation.headword) : nullptr;
    return known && known->isSpellPractice();
}

void AddWordModel::addSentence()
{
    m_showSentence = true;
    emit changed();
}

void AddWordModel::lookup()
{
    const QString query = trimmedSpace(m_word);
    if (query.isEmpty() || m_isLoading)
        return;
    m_word = query;
    m_asked = query;
    m_isLoading = true;
    m_error.clear();
    m_lastSaved.clear();
    m_result.reset();
    emit wordChanged();
    emit changed();
    ask(query, m_sentence, m_task.renew());
}

void AddWordModel::lookupAlternative(const QString &text)
{
    if (m_isLoading)
        return;
    m_word = text;
    lookup();
}

QCoro::Task<> AddWordModel::ask(QString query, QString sentence, std::stop_token stop)
{
    try {
        const auto client = m_newClient(m_config.config());
        LookupResult result;
        if (!sentence.isEmpty() && !hasChinese(query)) {
            std::optional<QString> context(sentence);
            result.explanation = co_await client->explain(query, std::move(context), stop);
        } else {
            result = co_await client->lookup(query, stop);
        }
        if (stop.stop_requested())
            co_return;
        m_result = std::move(result);
    } catch (const std::exception &failure) {
        if (stop.stop_requested())
            co_return;
        m_error = Failure::shownText(failure);
    }
    m_isLoading = false;
    emit changed();
}

void AddWordModel::save()
{
    if (!m_result)
        return;
    const Explanation explanation = m_result->explanation;
    const PageSource source{.app = u"手动添加"_s, .url = std::nullopt, .title = std::nullopt};
    m_words.save(explanation, source);
    m_lastSaved = u"已保存 "_s + explanation.headword;
    reset();
}

void AddWordModel::addSpelling()
{
    if (!m_result || isSpelled())
        return;
    const Explanation explanation = m_result->explanation;
    m_words.addSpellPractice(explanation);
    m_lastSaved = u"已加入常拼 "_s + explanation.headword;
    reset();
}

void AddWordModel::reset()
{
    m_word.clear();
    m_sentence.clear();
    m_showSentence = false;
    m_result.reset();
    m_error.clear();
    m_isLoading = false;
    m_task.cancel();
    emit wordChanged();
    emit changed();
    emit wasReset();
}

} // namespace nimbrelle
