// RunningServer.h - the server on a port of the loopback address, on a thread of its own.
#pragma once

#include <ctime>
#include <string>
#include <thread>

#include "tools/sealserver/AccessLog.h"
#include "tools/sealserver/AdminSite.h"
#include "tools/sealserver/HttpServer.h"
#include "tools/sealserver/SealService.h"

// Serves until the end of the test.
class RunningServer {
public:
    RunningServer(const HttpSettings& settings, SealStore& store, const std::string& log)
        : m_log(log),
          m_service(store),
          m_site(
              store, [] { return std::time_t{1'800'000'000}; }, !settings.certificate.empty()),
          m_server(settings, m_service, m_site, m_log),
          m_thread([this] { m_server.Serve(); }) {}
    ~RunningServer() {
        m_server.Stop();
        m_thread.join();
    }

    // Without the path.
    std::string Address() const { return m_server.Url(""); }

private:
    AccessLog m_log;
    SealService m_service;
    AdminSite m_site;
    HttpServer m_server;
    std::thread m_thread;
};
