// SPDX-License-Identifier: MIT
// Two runs in one folder. Each reaches it through a separate mount and so does not see the other's locks, as
// if they ran on two computers.
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_dng.h"
#include "tests/faults/faulty_run.h"
#include "tests/faults/stage.h"
#include "tests/file_systems/faulty_mount.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"
#include "tests/support/program.h"
#include "tests/support/traced_program.h"

namespace file_systems {

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

/// A client repairs one picture into the shared folder.
struct Client {
    std::string name;     ///< of its mount and its card
    std::string picture;  ///< file name
    Bytes repaired;
};

class TwoClients : public testing::Test {
  protected:
    void SetUp() override {
        const std::string obstacle = support::TracedProgram::Obstacle();
        if (!obstacle.empty()) {
            GTEST_SKIP() << obstacle;
        }
        fs::create_directory(scratch_.path() / "shared");
        int brightness = 0;
        for (Client* client : {&first_, &second_}) {
            Prepare(*client, ++brightness);
        }
    }

    /// Makes the client's picture, and keeps its repaired version for comparison.
    void Prepare(Client& client, int brightness) {
        constexpr int width = 64;
        constexpr int height = 48;
        auto dng = support::SmallCameraDng(width, height);
        for (auto& byte : dng.raw) {
            byte = static_cast<std::uint8_t>(byte + brightness);
        }
        fs::create_directory(scratch_.path() / client.name);
        fs::create_directory(scratch_.path() / (client.name + "-card"));
        support::WriteFile(scratch_.path() / (client.name + "-card") / client.picture,
                           samples::Serialize(dng));
        ASSERT_EQ(support::RunProgram(VELMARCON_PROGRAM, Run(client).arguments).status, 0);
        const fs::path made = scratch_.path() / client.name / client.picture;
        client.repaired = support::ReadFile(made);
        fs::remove(made);
    }

    faults::Command Run(const Client& client) const {
        const std::string card = scratch_.path() / (client.name + "-card");
        return {{"-i", card + "/" + client.picture, "-o", scratch_.path() / client.name},
                card,
                VELMARCON_PROGRAM,
                scratch_.path()};
    }

    /// Expects that the picture was written or that the run reported the failure.
    void Judge(const Client& client, const support::Outcome& outcome, const std::string& when) {
        const fs::path made = scratch_.path() / "shared" / client.picture;
        if (fs::exists(made)) {
            EXPECT_TRUE(support::ReadFile(made) == client.repaired)
                << when << ": " << client.picture << " is a different picture or incomplete";
        } else {
            EXPECT_NE(outcome.output.find("DNG not written: "), std::string::npos)
                << when << ": " << client.picture << " was not written, and no message says why\n"
                << outcome.output;
        }
    }

    /// The numbers of the calls at which runs are stopped. Reads are left out, because they cannot conflict.
    std::vector<std::size_t> Stops() const {
        const auto calls = faults::RunCleanly(Run(first_)).calls;
        Clear();
        std::vector<std::size_t> stops;
        for (std::size_t i = 0; i < calls.size(); ++i) {
            if (calls[i].kind != faults::IoKind::kRead && calls[i].kind != faults::IoKind::kSeek) {
                stops.push_back(i);
            }
        }
        return stops;
    }

    static void RunTo(faults::IoRun& run, std::size_t call) {
        for (std::size_t i = 0; i <= call; ++i) {
            run.NextCall();
        }
    }

    /// Stops each run at the entry of a call, then lets the first run finish, then the second.
    void MeetAt(std::size_t first_stop, std::size_t second_stop) {
        faults::IoRun first(Run(first_));
        RunTo(first, first_stop);
        faults::IoRun second(Run(second_));
        RunTo(second, second_stop);
        first.program().Finish();
        second.program().Finish();
        const std::string when =
            "stopped at calls " + std::to_string(first_stop) + " and " + std::to_string(second_stop);
        Judge(first_, first.program().outcome(), when);
        Judge(second_, second.program().outcome(), when);
        const auto left = support::Names(scratch_.path() / "shared");
        EXPECT_LE(left.size(), 2U) << when << ": " << left.front() << " was left behind";
        Clear();
    }

    void Clear() const {
        for (const std::string& name : support::Names(scratch_.path() / "shared")) {
            fs::remove(scratch_.path() / "shared" / name);
        }
    }

    faults::Scratch scratch_;
    Client first_ = {"first", "L1000001.DNG", {}};
    Client second_ = {"second", "L1000002.DNG", {}};
};

TEST_F(TwoClients, EachGetsItsOwnPicture) {
    const FaultyMount first_mount("None", scratch_.path() / "shared", scratch_.path() / first_.name);
    const FaultyMount second_mount("None", scratch_.path() / "shared", scratch_.path() / second_.name);
    if (!first_mount.obstacle().empty()) {
        GTEST_SKIP() << first_mount.obstacle();
    }
    const auto stops = Stops();
    constexpr std::size_t step = 3;  // enough, because a conflict shows at more than one pair of calls
    int pairs = 0;
    for (const std::size_t first_stop : stops) {
        for (const std::size_t second_stop : stops) {
            if ((first_stop + second_stop) % step == 0) {
                MeetAt(first_stop, second_stop);
                ++pairs;
            }
        }
    }
    std::printf("TwoClients: %d pairs of runs\n", pairs);
}

}  // namespace

}  // namespace file_systems
