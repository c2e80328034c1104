#pragma once

#include "frame/Text.h"
#include "notebook/WordEntry.h"

#include <cstdint>
#include <cstdlib>

/// What the fuzz targets of words and sentences share.
namespace nimbrelle::fuzz {

/// A broken promise ends the program, so that the fuzzer keeps the input.
inline void require(bool promise)
{
    if (!promise)
        std::abort();
}

/// The lines of an input: a headword, a sentence, then forms. Missing ones are empty.
class Texts {
public:
    Texts(const std::uint8_t *data, std::size_t size)
        : m_lines(QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size))
                      .split(u'\n'))
    {
    }

    QString line(qsizetype number) const { return m_lines.value(number); }

    WordEntry word() const
    {
        WordEntry word;
        word.headword = line(0);
        word.examples = {{{}, line(1), {}, {}, false, {}, {}, {}, Timestamp{}}};
        word.inflections = {{QStringLiteral("past"), line(2)}};
        word.forms = QList<FormRecord>();
        for (const QString &form : m_lines.mid(3, 5))
            word.forms->append({FormKind::plural, form, Timestamp{}, 1, {}});
        return word;
    }

private:
    QStringList m_lines;
};

} // namespace nimbrelle::fuzz
