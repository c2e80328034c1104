#pragma once

#include "server/HttpServer.h"

#include <microhttpd.h>

namespace nimbrelle::server {

/// One request and its response on one connection, as the server library drives it: begin, then receive as
/// often as bytes come, then respond.
class Exchange {
public:
    Exchange(HttpServer &server, HttpServer::Connection &connection, MHD_Connection *mhd, std::string method,
        std::string path);
    ~Exchange();

    MHD_Result begin();
    void receive(std::string_view piece);
    MHD_Result respond();
    void markAborted() { m_aborted = true; }

private:
    RequestHead head() const;
    bool refusesBody(const RequestHead &request) const;
    MHD_Result send(const Response &response);
    void count() const;
    void log() const;

    HttpServer &m_server;
    HttpServer::Connection &m_connection;
    MHD_Connection *m_mhd;
    const std::string m_method;
    const std::string m_path;
    const ConnectionWatchdog::Clock::time_point m_start = ConnectionWatchdog::Clock::now();

    std::string m_notebookName;
    std::optional<PendingWrite> m_write; ///< present while the body is wanted
    std::optional<RequestBody> m_body;
    Response m_response;
    std::uint64_t m_received = 0;
    std::size_t m_sent = 0; ///< unless aborted: how much of it went out then nobody knows
    unsigned m_status = 0; ///< 0: no response yet
    bool m_aborted = false;
};

} // namespace nimbrelle::server
