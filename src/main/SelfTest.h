#pragma once

class QTextStream;

namespace nimbrelle {
class AppPaths;
class ConfigStore;
} // namespace nimbrelle

/// The program's built-in checks for a person at a terminal. They print what real logic makes of sample data
/// or of the notebook; most are read by eye.
namespace nimbrelle::SelfTest {

/// How tolerantly a settings file is read, on two samples. Touches no file.
void runConfig(QTextStream &out);

/// Whether study settings stamp their changes, through the real store; changes the settings. True when they
/// do.
bool runStudyStamp(ConfigStore &config, const AppPaths &paths, QTextStream &out);

} // namespace nimbrelle::SelfTest
