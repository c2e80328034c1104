#pragma once

#include "shell/GrowthFolder.h"

namespace nimbrelle {

class Clock;

/// The script by which the menu has this program write the growth archive: putting it in its place, taking it
/// away, and what the settings say about it. Looks at the files at each call.
class GrowthGenerator {
public:
    enum class State {
        absent,
        installed,
        outdated, ///< ours, but it calls a program at another place
        unsafe, ///< ours, but others could change it, so that it is not run
        foreign, ///< somebody else's
    };

    /// `program` is the path of this program.
    GrowthGenerator(const AppPaths &paths, QString program, const Clock &clock);

    State state() const;
    /// Puts the script in its place, open to the user alone. A script that is not ours is kept beside it
    /// under another name. Throws a Failure.
    void install() const;
    /// Takes our script away, and its folders if nothing else is in them; a report stays. Throws a Failure.
    void remove() const;

    /// What the one button does in a state, and what is said beside it.
    static QString buttonText(State state);
    QString note(State state) const;
    /// Does it.
    void toggle() const;

private:
    QByteArray text() const;
    void keepForeign() const;

    const GrowthFolder m_folder;
    const QString m_program;
    const Clock &m_clock;
};

} // namespace nimbrelle
