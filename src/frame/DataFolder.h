#pragma once

namespace nimbrelle {

class AppPaths;

enum class FolderChoice {
    ours, ///< the program's own folder in the user's data location
    users, ///< one that the user has named
};

/// Makes the folder of the data files, which only its owner can enter (mode 0700), with missing parents. One
/// of an earlier version that others can enter is closed to them; a folder that the user has named only when
/// nothing but data files is in it.
void prepareDataFolder(const AppPaths &paths, FolderChoice choice);

} // namespace nimbrelle
