#pragma once

#include <QtGlobal>

/// Random tests run the same way each time, unless the environment says otherwise:
///
///     NIMBRELLE_TEST_SEED=7 NIMBRELLE_TEST_STEPS=50000 sync_tests --gtest_filter='Convergence.*'
namespace nimbrelle::Seeds {

inline constexpr char variable[] = "NIMBRELLE_TEST_SEED";

inline quint32 first()
{
    return qEnvironmentVariableIsSet(variable) ? qEnvironmentVariable(variable).toUInt() : 1;
}

inline int steps(int usual)
{
    const int asked = qEnvironmentVariableIntValue("NIMBRELLE_TEST_STEPS");
    return asked > 0 ? asked : usual;
}

} // namespace nimbrelle::Seeds
