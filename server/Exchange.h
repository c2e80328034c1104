#pragma once

#include "server/HttpServer.h"

#include <microhttpd.h>

namespace nimbrelle::server {

/// One request and its answer on one connection, as the server library drives it: begin, then receive as
/// often as bytes come, then answer.
class Exchange {
public:
    Exchange(HttpServer &server, HttpServer::Connection &connection, MHD_Connection *wire, std::string method,
        std::string path);
    ~Exchange();

    MHD_Result begin();
    void receive(std::string_view piece);
    MHD_Result answer();
    void markCut() { m_cut = true; }

private:
    RequestHead head() const;
    bool refusesBody(const RequestHead &head) const;
    MHD_Result send(const Answer &answer);
    void log() const;

    HttpServer &m_server;
    HttpServer::Connection &m_connection;
    MHD_Connection *m_wire;
    const std::string m_method;
    const std::string m_path;
    const ConnectionWatch::Clock::time_point m_start = ConnectionWatch::Clock::now();

    std::string m_notebookName;
    std::optional<AdmittedWrite> m_write; ///< present while the body is wanted
    std::optional<HeldBody> m_body;
    Answer m_answer;
    std::uint64_t m_received = 0;
    std::size_t m_sent = 0;
    unsigned m_status = 0; ///< 0: no answer yet
    bool m_cut = false;
};

} // namespace nimbrelle::server
