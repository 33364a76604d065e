// The HTML report in a real browser: headless Chromium loads the frame set,
// both frames' pages and the chart page, and photographs the chart page into
// the build folder (report_charts.png) for a person to look at.
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "report_fixture.h"

extern char** environ;

using namespace pwctest;
namespace fs = std::filesystem;

namespace {

const auto* const kEnv = ::testing::AddGlobalTestEnvironment(new SampleDataEnvironment);

std::string FindChromium() {
    for (const char* path : {"/usr/bin/chromium", "/usr/bin/chromium-browser"})
        if (access(path, X_OK) == 0) return path;
    return "";
}

struct BrowserRun {
    bool finished = false;
    int status = -1;
    std::string out;
};

// Runs the browser with a fixed argument list in a process group of its own,
// its output to a file; the group is ended when it outlives the timeout.
BrowserRun RunBrowser(const std::string& program, const std::vector<std::string>& args,
                      const std::string& outFile, std::chrono::seconds timeout) {
    std::vector<std::string> storage{program};
    storage.insert(storage.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& a : storage) argv.push_back(a.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, 1, outFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    posix_spawn_file_actions_addopen(&files, 2, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attr;
    posix_spawnattr_init(&attr);
    posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attr, 0);
    pid_t pid = 0;
    const int rc = posix_spawn(&pid, program.c_str(), &files, &attr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attr);
    BrowserRun run;
    if (rc != 0) return run;

    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (true) {
        const pid_t done = waitpid(pid, &run.status, WNOHANG);
        if (done == pid) {
            run.finished = true;
            break;
        }
        if (std::chrono::steady_clock::now() > deadline) {
            kill(-pid, SIGKILL);
            waitpid(pid, &run.status, 0);
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    // Helpers of the browser left in its group end with it.
    kill(-pid, SIGKILL);
    run.out = ReadAll(outFile);
    return run;
}

class Browser : public ::testing::Test {
  protected:
    Browser() : dir("pwc_report_browser") {}
    void SetUp() override {
        chromium = FindChromium();
        if (chromium.empty())
            GTEST_SKIP() << "chromium is not installed (scripts/bootstrap.sh installs it as "
                            "root): the HTML report is not checked in a browser";
        demo.eng->DesignName = "sensor_hub <rev B>";
        demo.eng->GenerateHtmlReport(dir.File("demo"), "demo", kTool, kDate);
    }
    std::vector<std::string> Common() {
        return {"--headless",
                "--no-sandbox",
                "--disable-gpu",
                "--no-first-run",
                "--disable-extensions",
                "--hide-scrollbars",
                "--disable-dev-shm-usage",
                "--user-data-dir=" + dir.File("profile")};
    }
    std::string Url(const std::string& suffix) { return "file://" + dir.File("demo" + suffix); }
    // The page's document after loading, as the browser serialises it.
    std::string Dom(const std::string& suffix) {
        std::vector<std::string> args = Common();
        args.push_back("--dump-dom");
        args.push_back(Url(suffix));
        const BrowserRun run =
            RunBrowser(chromium, args, dir.File("dom.txt"), std::chrono::seconds(90));
        EXPECT_TRUE(run.finished) << "the browser did not finish loading " << suffix;
        return run.out;
    }

    ScratchDir dir;
    DemoEngine demo;
    std::string chromium;
};

TEST_F(Browser, LoadsTheFrameSetBothFramesAndTheChartPage) {
    const std::string frames = Dom(".html");
    EXPECT_NE(frames.find("<title>Power Calculator Report : demo.pcf</title>"), std::string::npos);
    EXPECT_NE(frames.find("name=\"contents\""), std::string::npos);
    EXPECT_NE(frames.find("name=\"main\""), std::string::npos);

    const std::string toc = Dom("_power_toc.html");
    EXPECT_NE(toc.find("Table of Contents"), std::string::npos) << toc;
    EXPECT_NE(toc.find(">Detailed Power Report</a>"), std::string::npos);
    EXPECT_NE(toc.find(">Power Charts</a>"), std::string::npos);

    const std::string top = Dom("_power_top.html");
    for (const char* heading :
         {"Power Model Information", "Design and Device Details", "Power Supplies"})
        EXPECT_NE(top.find(std::string("<font class=\"header\">") + heading + "</font>"),
                  std::string::npos)
            << heading;

    const std::string charts = Dom("_power_charts.html");
    EXPECT_NE(charts.find("<h1>Power Charts</h1>"), std::string::npos) << charts;
    EXPECT_NE(charts.find("<h2>Power per Block</h2>"), std::string::npos);
    EXPECT_NE(charts.find("<h2>Power per Supply</h2>"), std::string::npos);
    // The design name came through as text, not as markup.
    EXPECT_NE(charts.find("sensor_hub &lt;rev B&gt;"), std::string::npos);
    EXPECT_EQ(charts.find("<rev"), std::string::npos);
}

TEST_F(Browser, PhotographsTheChartPageIntoTheBuildFolder) {
    const std::string shot = std::string(PWC_TEST_BINARY_DIR) + "/report_charts.png";
    std::error_code ec;
    fs::remove(shot, ec);
    std::vector<std::string> args = Common();
    args.push_back("--window-size=800,900");
    args.push_back("--screenshot=" + shot);
    args.push_back(Url("_power_charts.html"));
    const BrowserRun run =
        RunBrowser(chromium, args, dir.File("shot.txt"), std::chrono::seconds(90));
    ASSERT_TRUE(run.finished) << "the browser did not finish the screenshot";
    ASSERT_TRUE(fs::is_regular_file(shot)) << shot;
    // A PNG of some substance, not an empty canvas.
    const std::string png = ReadAll(shot);
    EXPECT_EQ(png.substr(1, 3), "PNG");
    EXPECT_GT(png.size(), 10000u);
}

}  // namespace
