// The sandboxes of a server, made and used by the command.
#include <gtest/gtest.h>

#include "Tests/Tools/Command.h"

namespace hlv {
namespace {

using testing::Command;

class ToolSandboxes : public ::testing::Test {
 protected:
  /// One line for the server's provider. SNAPSHOT stands for the one that was made last.
  testing::Finished run(std::string line) {
    if (const auto at = line.find("SNAPSHOT"); at != std::string::npos) {
      line.replace(at, 8, snapshot_);
    }
    auto finished = tool_.run(line + " --provider " + urls_["provider"].get<std::string>());
    if (line.starts_with("--json sandbox snapshot") && finished.status == 0) {
      snapshot_ = finished.document()["snapshot"];
    }
    return finished;
  }

  testing::Finished runAt(const std::string& sandbox, const std::string& line) {
    const auto below = "/sandboxes/" + sandbox;
    return tool_.run("--backend " + urls_["backend"].get<std::string>() + below + " --provider " +
                     urls_["provider"].get<std::string>() + below + " " + line);
  }

  Command server_, tool_;
  nlohmann::json urls_ = server_.serve();
  std::string snapshot_;
};

TEST_F(ToolSandboxes, AreMadeKeptBroughtBackAndRemoved) {
  struct Row {
    std::string line, says;
    int status = 0;
  };
  const Row before[] = {
      {"sandbox create --id checkout --seed 7 --clock 2030-06-01T12:00:00Z",
       "✓ The sandbox is created: checkout.\n  id        checkout\n  seed      7\n"
       "  clock     2030-06-01T12:"},
      {"sandbox create --id checkout", "There is a sandbox of this name.", 2},
  };
  const Row after[] = {
      {"--json sandbox snapshot checkout", "snp_"},
      {"sandbox reset checkout", "The sandbox is empty: checkout."},
      {"sandbox show checkout", "guests    0"},
      {"sandbox restore checkout --snapshot SNAPSHOT", "The sandbox is as it was: checkout."},
      {"sandbox show checkout", "guests    1"},
      {"sandbox create --id copy --snapshot SNAPSHOT --in-memory --ttl 3600",
       "kept      in memory"},
      {"sandbox show", "id        default"},
      {"sandbox list", "  copy      "},
      {"sandbox clock checkout --advance 86400", "The time is 2030-06-02T12:"},
      {"sandbox clock checkout --set 2029-01-01T00:00:00Z", "A clock moves forwards only", 2},
      {"sandbox clock checkout", "The time is 2030-06-02T12:"},
      {"sandbox delete checkout", "The sandbox is deleted: checkout."},
      {"sandbox show checkout", "There is no sandbox of this name.", 2},
  };
  const auto expectEach = [this](const auto& rows) {
    for (const auto& [line, says, status] : rows) {
      const auto finished = run(line);
      EXPECT_EQ(finished.status, status) << line << ": " << finished.out << finished.err;
      const auto& text = status == 0 ? finished.out : finished.err;
      EXPECT_NE(text.find(says), std::string::npos) << line << ": " << text;
    }
  };
  expectEach(before);
  EXPECT_EQ(runAt("checkout", Command::guest).status, 0);
  const auto armed = runAt("checkout", "fault arm addPaymentInstrument never --json");
  EXPECT_EQ(armed.document()["fault"]["number"], 1);
  expectEach(after);
  EXPECT_EQ(tool_.run("sandbox list").err,
            "paylevenkit: Say --provider URL, the provider of a running `paylevenkit serve`.\n");
  EXPECT_EQ(tool_.run("--store " + server_.store() + " reset --yes").status, 2) << "in use";
  EXPECT_EQ(server_.end().status, 0);
  EXPECT_EQ(server_.run("reset --yes").status, 0);
  EXPECT_FALSE(std::filesystem::exists(server_.store() + ".sandboxes"));
}

}  // namespace
}  // namespace hlv
