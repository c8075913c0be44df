// DialogProcessTest.h - a host whose dialogs are shown by a program that plays a script.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "platform/Dialog.h"
#include "platform/linux/DialogProcess.h"
#include "support/Environment.h"
#include "support/TemporaryPrefix.h"

// Remembers what it hears, and does what the test wants.
class RecordingProcedure : public platform::DialogProcedure {
public:
    using Act = std::function<void(platform::DialogWindow&)>;

    void OnOpen(platform::DialogWindow& window) override {
        m_heard.push_back("open");
        if (onOpen) onOpen(window);
    }
    bool OnClose(platform::DialogWindow& window) override {
        m_heard.push_back("close");
        if (onClose) onClose(window);
        return onClose != nullptr;
    }
    bool OnButton(platform::DialogWindow& window, int button) override {
        m_heard.push_back("button " + std::to_string(button));
        if (onButton) onButton(window);
        return onButton != nullptr;
    }
    bool OnNodeSelected(platform::DialogWindow& window, int tree) override {
        m_heard.push_back("node " + std::to_string(tree));
        if (onNode) onNode(window);
        return onNode != nullptr;
    }

    Act onOpen, onClose, onButton, onNode;
    std::vector<std::string> m_heard;
};

// The host must be left as it was found: no child, no descriptor, SIGPIPE as it was.
class DialogProcessTest : public testing::Test {
protected:
    static constexpr char kGreeting[] = "hear tesmark-dialog\nsay tesmark-dialog\t1\n";
    static constexpr char kBuilding[] =
        "hear dialog\nsay ready\t10\t20\t510\t320\nsay area\t0\t0\t1024\t728\n"
        "say built\n";
    static constexpr char kShowing[] = "hear show\nsay shown\n";
    // For what comes in time whatever the machine is at, and for what never comes.
    static constexpr platform::DialogLimits kPatient{60'000, 60'000, 60'000};
    static constexpr platform::DialogLimits kImpatient{200, 200, 200};

    DialogProcessTest() {
        SetVariable("DIALOG_LOG", m_prefix.Below("log"));
        m_descriptors = OpenDescriptors();
    }
    ~DialogProcessTest() override {
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
        EXPECT_EQ(OpenDescriptors(), m_descriptors);
        struct sigaction pipe {};
        sigaction(SIGPIPE, nullptr, &pipe);
        EXPECT_EQ(pipe.sa_handler, SIG_DFL);
        ClearVariable("DIALOG_LOG");
        ClearVariable("DIALOG_SCRIPT");
    }

    static std::vector<std::string> OpenDescriptors() {
        std::vector<std::string> open;
        for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code gone;
            const auto target = std::filesystem::read_symlink(entry.path(), gone);
            if (!gone) open.push_back(entry.path().filename().string() + " " + target.string());
        }
        return open;
    }
    static std::string AllUpToShown() { return std::string(kGreeting) + kBuilding + kShowing; }

    int Run(const std::string& script, const platform::DialogLimits& limits = kPatient,
            int dialog = 104) {
        SetVariable("DIALOG_SCRIPT", script);
        const auto process = platform::DialogProcess::Start(SCRIPTED_PROGRAM, limits);
        if (!process) return -100;
        return platform::RunDialog(*process, *platform::FindTemplate(dialog), m_procedure);
    }
    // What the program found and heard.
    std::vector<std::string> Log() const {
        std::vector<std::string> lines;
        std::ifstream file(m_prefix.Below("log"), std::ios::binary);
        for (std::string line; std::getline(file, line);) lines.push_back(line);
        return lines;
    }

    TemporaryPrefix m_prefix;
    RecordingProcedure m_procedure;
    std::vector<std::string> m_descriptors;
};
