#include "app/catalogue_commands.h"
#include "app/command_line.h"
#include "app/core_diagnosis.h"
#include "app/desktop_loader.h"
#include "app/info_command.h"
#include "app/terminal.h"
#include "platform/linux/xdg/standard_error_log_sink.h"

#include <clocale>

namespace glyma {

namespace {

struct Runner {
    int argc;
    char** argv;
    LogSink& logSink;

    int operator()(const RunCommand&) const { return callDesktopFor(glymaDesktopRun); }
    int operator()(const PreferencesCommand& command) const {
        auto preferences = request(glymaDesktopPreferences);
        preferences.tab = command.tab.c_str();
        return callDesktopWith(preferences);
    }
    int operator()(const KeepClipboardCommand&) const { return callDesktopFor(glymaDesktopKeepClipboard); }
    int operator()(const QuitCommand&) const { return callDesktopFor(glymaDesktopQuit); }
    int operator()(const SearchCommand& command) const {
        Foundation foundation(logSink);
        return runSearch(command, foundation);
    }
    int operator()(const InfoCommand& command) const {
        const auto text = command.selection ? selectedText() : textOf(command);
        if (!text)
            return text.error();
        if (command.panel) {
            auto show = request(glymaDesktopShowInfo);
            show.text = text->c_str();
            return callDesktopWith(show);
        }
        Foundation foundation(logSink);
        return runInfo(command, *text, foundation);
    }
    int operator()(const ImportCommand& command) const {
        Foundation foundation(logSink);
        return runImport(command, foundation);
    }
    int operator()(const DoctorCommand& command) const {
        Foundation foundation(logSink);
        auto diagnoses = diagnoseCore(foundation);
        addDesktop(diagnoses);
        const int printed = print(command.json ? diagnosesAsJson(diagnoses) : diagnosesAsText(diagnoses));
        return printed == status::done ? exitStatus(diagnoses) : printed;
    }

private:
    GlymaDesktopRequest request(GlymaDesktopTask task) const {
        return {.version = GLYMA_VERSION,
                .task = task,
                .argc = argc,
                .argv = argv,
                .tab = "",
                .report = nullptr,
                .context = nullptr,
                .receive = nullptr,
                .text = nullptr};
    }

    int callDesktopFor(GlymaDesktopTask task) const { return callDesktopWith(request(task)); }

    static int callDesktopWith(const GlymaDesktopRequest& request) {
        const auto result = callDesktop(request);
        return result ? *result : fail(result.error());
    }

    std::expected<std::string, int> selectedText() const {
        std::string text;
        auto read = request(glymaDesktopSelection);
        read.context = &text;
        read.receive = [](void* context, const char* selected, std::size_t size) {
            static_cast<std::string*>(context)->assign(selected, size);
        };
        if (const int result = callDesktopWith(read); result != status::done)
            return std::unexpected(result);
        if (text.empty())
            return std::unexpected(fail("No text was selected."));
        return text;
    }

    void addDesktop(std::vector<Diagnosis>& diagnoses) const {
        auto diagnose = request(glymaDesktopDiagnose);
        diagnose.context = &diagnoses;
        diagnose.report = [](void* context, const char* name, int state, const char* why, const char* mend) {
            static_cast<std::vector<Diagnosis>*>(context)->push_back(
                {.name = name, .state = static_cast<Diagnosis::State>(state), .why = why, .mend = mend});
        };
        if (const auto result = callDesktop(diagnose); !result)
            diagnoses.push_back({.name = "desktop part",
                                 .state = Diagnosis::State::missing,
                                 .why = result.error(),
                                 .mend = "Install the program again, with the Qt 6 libraries it needs."});
    }
};

} // namespace

} // namespace glyma

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "");
    const auto command = glyma::parseCommandLine(argc, argv);
    glyma::xdg::StandardErrorLogSink logSink;
    return command ? std::visit(glyma::Runner{argc, argv, logSink}, *command) : command.error();
}
