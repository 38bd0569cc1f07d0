#include <string>
#include <vector>

#include <sys/resource.h>

#include <gtest/gtest.h>
#include <sched.h>

#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/platform/linux/LinuxMachineLoad.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

TEST(MachineLoad, aBatteryCountsWhenItDrainsTheMachine) {
    struct Supply {
        const char* name;
        const char* type;
        const char* status;
        const char* online;
        const char* scope;
    };
    const struct {
        const char* about;
        std::vector<Supply> supplies;
        bool isOnBattery;
    } cases[] = {
        {"a desktop", {}, false},
        {"unplugged",
         {{"AC", "Mains", "", "0", ""}, {"BAT0", "Battery", "Discharging", "", ""}},
         true},
        {"charging",
         {{"AC", "Mains", "", "1", ""}, {"BAT0", "Battery", "Charging", "", ""}},
         false},
        {"plugged in, not charging", {{"BAT0", "Battery", "Not charging", "", ""}}, false},
        {"full", {{"BAT0", "Battery", "Full", "", ""}}, false},
        {"two batteries",
         {{"BAT0", "Battery", "Full", "", ""}, {"BAT1", "Battery", "Discharging", "", ""}},
         true},
        {"a weak plug",
         {{"BAT0", "Battery", "Discharging", "", ""}, {"ucsi", "USB", "", "1", ""}},
         false},
        {"a mouse", {{"hid", "Battery", "Discharging", "", "Device"}}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.about);
        const TestFolder root;
        for (const Supply& supply : c.supplies) {
            const std::string folder = std::string("sys/class/power_supply/") + supply.name + "/";
            const auto write = [&](const char* name, std::string value) {
                if (!value.empty()) root.file(folder + name, value + "\n");
            };
            write("type", supply.type);
            write("status", supply.status);
            write("online", supply.online);
            write("scope", supply.scope);
        }
        EXPECT_EQ(LinuxMachineLoad(root.url()).isOnBattery(), c.isOnBattery);
    }
}

/// What the kernel would say ten seconds after it said nothing.
struct Proc {
    int normal = 0;  ///< Ticks of 100: at normal priority …
    int nice = 0;    ///< … and at a low one.
    int allKiB = 0;
    int ownKiB = 0;
    double cpu = 0;
    double io = 0;
    double memory = 0;
};

TEST(MachineLoad, othersMakeItBusyAndOurOwnWorkDoesNot) {
    const struct {
        const char* about;
        Proc proc;
        bool isBusy;
    } cases[] = {
        {"nothing happens", {}, false},
        {"a build on all processors", {.normal = 95, .nice = 5, .cpu = 99}, true},
        {"one of two processors", {.normal = 50, .nice = 50, .cpu = 30}, false},
        {"all processors, nobody waits", {.normal = 95, .cpu = 2}, false},
        {"our own threads wait for each other", {.normal = 5, .nice = 95, .cpu = 99}, false},
        {"another program copies", {.allKiB = 1000, .ownKiB = 100, .io = 60}, true},
        {"we read", {.allKiB = 1000, .ownKiB = 900, .io = 60}, false},
        {"another reads a little", {.allKiB = 1000, .io = 5}, false},
        {"memory is short", {.memory = 30}, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.about);
        const TestFolder root;
        const LinuxMachineLoad load(root.url(), std::chrono::milliseconds(0));
        EXPECT_FALSE(load.isBusy()) << "nothing is known";
        const auto pressure = [&](const char* name, double some) {
            root.file(std::string("proc/pressure/") + name,
                      "some avg10=" + std::to_string(some) +
                          " avg60=9.00 avg300=9.00 total=1\n"
                          "full avg10=99.00 avg60=0.00 avg300=0.00 total=0\n");
        };
        pressure("cpu", c.proc.cpu);
        pressure("io", c.proc.io);
        pressure("memory", c.proc.memory);
        const int idle = 100 - c.proc.normal - c.proc.nice;
        root.file("proc/stat", "cpu  " + std::to_string(c.proc.normal) + " " +
                                   std::to_string(c.proc.nice) + " 0 " + std::to_string(idle) +
                                   " 0 0 0 0 0 0\ncpu0 1 2 3 4\n");
        root.file("proc/vmstat", "nr_free_pages 1\npgpgin " + std::to_string(c.proc.allKiB) +
                                     "\npgpgout 0\npgpgoutclean 7\n");
        root.file("proc/self/io", "rchar: 5\nread_bytes: " + std::to_string(c.proc.ownKiB * 1024) +
                                      "\nwrite_bytes: 0\ncancelled_write_bytes: 9\n");
        EXPECT_EQ(load.isBusy(), c.isBusy);
    }
}

TEST(MachineLoad, onlyTheThreadThatAsksIsLowered) {
    LinuxMachineLoad load;
    int policy = -1;
    int nice = 0;
    {
        SerialQueue queue("tarn.test");
        queue.run([&] {
            load.lowerPriorityOfThread();
            policy = sched_getscheduler(0);
            nice = getpriority(PRIO_PROCESS, 0);
        });
    }
    EXPECT_EQ(policy, SCHED_IDLE);
    EXPECT_EQ(nice, 19);
    EXPECT_NE(sched_getscheduler(0), SCHED_IDLE);
}

}  // namespace
}  // namespace tarn
