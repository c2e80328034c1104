#pragma once

#include <chrono>

namespace nimbrelle::server {

inline std::chrono::sys_seconds now()
{
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

} // namespace nimbrelle::server
