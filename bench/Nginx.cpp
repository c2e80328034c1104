#include "Nginx.h"

#include <csignal>
#include <fstream>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace nimbrelle::bench {

namespace {

constexpr const char *program = "/usr/sbin/nginx";

std::string configuration(const std::string &folder, std::uint16_t port)
{
    return "daemon off;\nmaster_process off;\npid " + folder + "/nginx.pid;\nerror_log " + folder
        + "/error.log;\nevents { worker_connections 256; }\nhttp {\n"
          "    access_log off;\n    default_type application/json;\n    keepalive_requests 1000000000;\n"
          "    open_file_cache max=10;\n    client_body_temp_path "
        + folder + "/t1;\n    proxy_temp_path " + folder + "/t2;\n    fastcgi_temp_path " + folder
        + "/t3;\n    uwsgi_temp_path " + folder + "/t4;\n    scgi_temp_path " + folder
        + "/t5;\n    server {\n        listen 127.0.0.1:" + std::to_string(port)
        + " ssl;\n        ssl_certificate " + folder + "/server.crt;\n        ssl_certificate_key " + folder
        + "/server.key;\n        ssl_protocols TLSv1.2 TLSv1.3;\n        location = /v1/bundle { alias "
        + folder + "/bundle; }\n    }\n}\n";
}

} // namespace

bool Nginx::isInstalled()
{
    return ::access(program, X_OK) == 0;
}

Nginx::Nginx(const std::filesystem::path &folder, std::uint16_t port) : m_port(port)
{
    const std::string file = (folder / "nginx.conf").string();
    std::ofstream(file) << configuration(folder.string(), port);
    const char *arguments[] = {program, "-p", folder.c_str(), "-c", file.c_str(), nullptr};
    if (::posix_spawn(&m_process, program, nullptr, nullptr, const_cast<char **>(arguments), environ) != 0)
        throw std::runtime_error("nginx does not start");
}

Nginx::~Nginx()
{
    ::kill(m_process, SIGTERM);
    ::waitpid(m_process, nullptr, 0);
}

} // namespace nimbrelle::bench
