#pragma once

namespace nimbrelle {

/// The program in a desktop session, until it is told to end; ends in the exit code. A second start on the
/// same data directory shows the settings of the first and ends at once, well. Commands that write do so in
/// here while it runs.
int runDesktop(int argc, char **argv);

} // namespace nimbrelle
