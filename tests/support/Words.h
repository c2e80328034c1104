#pragma once

#include "frame/AppConfig.h"
#include "notebook/WordEntry.h"

namespace nimbrelle {

/// A word with nothing but an id and its headword.
inline WordEntry wordNamed(const QString &headword)
{
    WordEntry word;
    word.id = QUuid::createUuid();
    word.headword = headword;
    return word;
}

/// The default settings but for these.
inline AppConfig configWith(const StudyValues &values)
{
    AppConfig config;
    static_cast<StudyValues &>(config) = values;
    return config;
}

enum class Origin { met, generated };

inline Example exampleOf(const QString &sentence, Origin origin = Origin::met, Timestamp addedAt = {})
{
    return {QUuid::createUuid(), sentence, {}, {}, origin == Origin::generated, {}, {}, {}, addedAt};
}

} // namespace nimbrelle
