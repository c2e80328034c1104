#pragma once

#include <QList>
#include <QString>

namespace nimbrelle {

/// One box for each letter of an answer while it is typed. What it shows is no grading.
struct LetterSlots {
    enum class Role {
        open, ///< not typed yet: the secondary colour
        right, ///< green
        wrong, ///< red; also whatever goes beyond the answer
    };

    struct Box {
        QString character; ///< one character; "_" or, for a blank of the answer, a blank while open
        Role role = Role::open;

        bool operator==(const Box &) const = default;
    };

    QString answer;
    QString typed;

    /// As many as the longer of the two texts has characters.
    QList<Box> boxes() const;
    /// The same in rows of at most `widest`, broken after a blank of the answer where one is in reach. What
    /// is typed changes no break within the answer.
    QList<QList<Box>> rows(qsizetype widest) const;
};

} // namespace nimbrelle
