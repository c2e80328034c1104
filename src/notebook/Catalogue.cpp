#include "notebook/Catalogue.h"

#include "frame/RecordCodec.h"

#include <QStringList>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

struct GrammarText {
    QString label;
    QString explanation;
};

struct AffixText {
    QString meaning;
    QString examples;
    QString variants;
};

const std::array<QString, caseCount<Register>> registerLabels{
    u"正式"_s, u"中性"_s, u"口语"_s, u"俚语"_s, u"技术"_s};

const std::array<QString, caseCount<FormKind>> formLabels{
    u"原形"_s,
    u"第三人称单数"_s,
    u"-ing 形式"_s,
    u"过去式"_s,
    u"过去分词"_s,
    u"复数"_s,
    u"比较级"_s,
    u"最高级"_s,
};

const std::array<GrammarText, caseCount<GrammarPoint>> grammarTexts{{
    {u"一般现在时"_s,
        u"说习惯、事实、经常发生的事。主语是 he/she/it 时动词加 -s。\n例：She works from home."_s},
    {u"现在进行时"_s, u"说现在正在做的事。am/is/are + 动词-ing。\n例：I'm reading a Reddit thread."_s},
    {u"一般过去时"_s,
        u"说过去已经发生、已经结束的事。规则动词加 -ed，不规则动词要单独记。\n例：He went home early."_s},
    {u"过去进行时"_s,
        u"说过去某个时刻正在做的事。was/were + 动词-ing。\n例：I was sleeping when you called."_s},
    {u"现在完成时"_s,
        u"过去发生、但跟现在有关系的事（经历、刚完成、一直持续）。have/has + "
        "过去分词。\n例：I've never seen this before."_s},
    {u"过去完成时"_s,
        u"比过去某个时间更早发生的事，\"过去的过去\"。had + 过去分词。\n例：The game had "
        "started when I arrived."_s},
    {u"将来时"_s,
        u"说将来要发生的事。will + 动词原形，或 be going to + 动词原形。\n例：It's going to rain."_s},
    {u"被动语态"_s, u"强调\"被怎么样\"，不在乎是谁做的。be + 过去分词。\n例：This post was deleted."_s},
    {u"动名词"_s, u"动词加 -ing 当名词用，表示\"做这件事\"。\n例：Learning English is hard."_s},
    {u"不定式"_s, u"to + 动词原形，常表示目的或要做的事。\n例：I came here to ask a question."_s},
    {u"情态动词"_s,
        u"can / could / should / would / must / might "
        "等，表示能力、建议、可能、必须，后面跟动词原形。\n例：You should try it."_s},
    {u"祈使句"_s, u"直接让别人做某事，句子以动词原形开头，没有主语。\n例：Check the docs first."_s},
    {u"条件句"_s,
        u"\"如果……就……\"。常见 if + 现在时, will…；或者 if + 过去式, would…（假设）。\n例：If "
        "I were you, I would quit."_s},
    {u"比较级"_s, u"两者比较，\"更……\"。短词加 -er，长词前面加 more。\n例：This version is faster."_s},
    {u"最高级"_s,
        u"三者以上比较，\"最……\"。短词加 -est，长词前面加 most。\n例：It's the best answer here."_s},
    {u"名词复数"_s,
        u"名词表示多个。一般加 -s/-es，也有不规则的（child → children）。\n例：Two new features."_s},
}};

const std::array<AffixText, caseCount<Affix>> affixTexts{{
    {u"不、相反"_s, u"unhappy, unlock, unknown"_s, {}},
    {u"不、没有"_s, u"incorrect, impossible, invisible"_s,
        u"也写作 im-（impossible）、il-（illegal）、ir-（irregular）"_s},
    {u"不、相反、去掉"_s, u"disagree, disable, dislike"_s, {}},
    {u"再、重新"_s, u"restart, rewrite, reload"_s, {}},
    {u"在……之前、预先"_s, u"preview, prepaid, preset"_s, {}},
    {u"错误地"_s, u"mistake, misread, misunderstand"_s, {}},
    {u"过度、在上面"_s, u"overload, overthink, overflow"_s, {}},
    {u"不足、在下面"_s, u"underrated, underestimate, underline"_s, {}},
    {u"非、不"_s, u"nonsense, non-profit, nonstop"_s, {}},
    {u"反对、抗"_s, u"antivirus, antisocial"_s, {}},
    {u"共同、一起"_s, u"coworker, co-op, coexist"_s, {}},
    {u"在……之间、相互"_s, u"internet, interact, interface"_s, {}},
    {u"把动词变成名词（动作或结果）"_s, u"decision, action, information"_s,
        u"也写作 -sion（decision）、-ation（information）"_s},
    {u"把动词变成名词（行为或结果）"_s, u"development, agreement, payment"_s, {}},
    {u"把形容词变成名词（性质、状态）"_s, u"happiness, darkness, awareness"_s, {}},
    {u"把形容词变成名词（性质）"_s, u"ability, security, popularity"_s, u"也写作 -ty（safety）"_s},
    {u"做某事的人或东西"_s, u"player, developer, editor"_s, u"也写作 -or（editor）"_s},
    {u"从事某事的人、某种主义的人"_s, u"artist, scientist, tourist"_s, {}},
    {u"能被……的、可以……的"_s, u"readable, usable, available"_s, u"也写作 -ible（visible）"_s},
    {u"充满……的"_s, u"useful, helpful, careful"_s, {}},
    {u"没有……的"_s, u"useless, homeless, endless"_s, {}},
    {u"有……性质的（形容词）"_s, u"famous, dangerous, various"_s, u"也写作 -ious（curious）"_s},
    {u"有……倾向的（形容词）"_s, u"active, creative, expensive"_s, {}},
    {u"与……有关的（形容词）"_s, u"personal, global, optional"_s, u"也写作 -ial（official）"_s},
    {u"与……有关的、……式的（形容词）"_s, u"basic, economic, toxic"_s, {}},
    {u"把形容词变成副词（……地）"_s, u"quickly, really, usually"_s,
        u"形容词结尾的 -ly（friendly）是另一种用法"_s},
    {u"使……化、变成（动词）"_s, u"organize, realize, optimize"_s, u"英式写作 -ise"_s},
    {u"使……、变成（动词）"_s, u"simplify, verify, notify"_s, {}},
    {u"使变得……（动词）"_s, u"shorten, strengthen, widen"_s, {}},
    {u"身份、关系、状态（名词）"_s, u"friendship, relationship, ownership"_s, {}},
}};

template <class Enum, class Table> const auto &textOf(const Table &table, Enum value)
{
    return table[static_cast<std::size_t>(value)];
}

template <class Enum> std::optional<Enum> looseCase(const std::optional<QString> &text)
{
    const QString wanted = text.value_or(QString()).remove(u'_').toLower();
    for (const Enum value : allCases<Enum>()) {
        if (caseText(value).toLower() == wanted)
            return value;
    }
    return std::nullopt;
}

QString listedAffixes()
{
    QStringList quoted;
    for (const Affix affix : allCases<Affix>())
        quoted.append(u'"' + displayForm(affix) + u'"');
    return quoted.join(u", "_s);
}

} // namespace

QString label(Register tone)
{
    return textOf(registerLabels, tone);
}

Register registerFrom(const std::optional<QString> &text)
{
    return caseFrom<Register>(text.value_or(QString()).toLower()).value_or(Register::neutral);
}

QString label(FormKind kind)
{
    return textOf(formLabels, kind);
}

QString label(GrammarPoint point)
{
    return textOf(grammarTexts, point).label;
}

QString explanation(GrammarPoint point)
{
    return textOf(grammarTexts, point).explanation;
}

QString displayForm(Affix affix)
{
    return isSuffix(affix) ? u'-' + caseText(affix) : caseText(affix) + u'-';
}

QStringList displayForms(const QList<Affix> &affixes)
{
    QStringList forms;
    for (const Affix affix : affixes)
        forms.append(displayForm(affix));
    return forms;
}

QString meaning(Affix affix)
{
    return textOf(affixTexts, affix).meaning;
}

QString examples(Affix affix)
{
    return textOf(affixTexts, affix).examples;
}

QString variants(Affix affix)
{
    return textOf(affixTexts, affix).variants;
}

const QString &affixApiList()
{
    static const QString list = listedAffixes();
    return list;
}

std::optional<FormKind> looseFormKind(const std::optional<QString> &text)
{
    return looseCase<FormKind>(text);
}

std::optional<GrammarPoint> looseGrammarPoint(const std::optional<QString> &text)
{
    return looseCase<GrammarPoint>(text);
}

} // namespace nimbrelle
