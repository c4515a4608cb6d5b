#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "hosts/linux/device_facts_reader.hpp"
#include "hosts/linux/file_secure_items.hpp"
#include "hosts/linux/linux_device.hpp"
#include "hosts/linux/system_scheduler.hpp"
#include "tests/linux/temporary_directory.hpp"

namespace orbinel::hosts {

namespace {

using platform::Connection;

struct Facts : testing::Test {
    void put(const std::string& file, const std::string& content) const {
        const auto path = root.path() / file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << content;
    }

    void putRoute(const std::string& line) const {
        put("proc/net/route",
            "Iface\tDestination\tGateway\tFlags\tRefCnt\tUse\tMetric\tMask\tMTU\tWindow\tIRTT\n" + line);
    }

    [[nodiscard]] platform::DeviceFacts read(const LocaleEnvironment& environment = {}) const {
        return DeviceFactsReader(root.path(), environment).read();
    }

    TemporaryDirectory root;
};

TEST_F(Facts, ConnectionIsThatOfTheDefaultRoute) {
    EXPECT_EQ(read().connection, Connection::unknown);
    putRoute("eth0\t0000A8C0\t00000000\t0001\t0\t0\t100\t00FFFFFF\t0\t0\t0\n");
    EXPECT_EQ(read().connection, Connection::none);
    const std::string mobile = "wwan0\t00000000\t01000A0A\t0003\t0\t0\t700\t00000000\t0\t0\t0\n";
    putRoute(mobile);
    EXPECT_EQ(read().connection, Connection::cellular);
    putRoute(mobile + "wlan0\t00000000\t0102A8C0\t0003\t0\t0\t600\t00000000\t0\t0\t0\n");
    EXPECT_EQ(read().connection, Connection::wifi);

    putRoute("");
    const std::string zeros(32, '0');
    const auto route = [&](const std::string& flags, const std::string& interface) {
        return zeros + " 00 " + zeros + " 00 " + zeros + " 00000400 00000001 00000000 " + flags + " " + interface +
               "\n";
    };
    put("proc/net/ipv6_route", route("00200200", "lo"));
    EXPECT_EQ(read().connection, Connection::none);
    put("proc/net/ipv6_route", route("00200200", "lo") + route("00450003", "usb0"));
    put("sys/class/net/usb0/uevent", "DEVTYPE=wwan\nINTERFACE=usb0\n");
    EXPECT_EQ(read().connection, Connection::cellular);
}

TEST_F(Facts, MachineAndBatteryLeaveOutWhatSaysNothing) {
    EXPECT_FALSE(read().machine);
    EXPECT_FALSE(read().battery);
    put("sys/class/dmi/id/product_name", "To be filled by O.E.M.\n");
    EXPECT_FALSE(read().machine);
    put("proc/device-tree/model", std::string("Board 7\0", 8));
    EXPECT_EQ(read().machine, "Board 7");
    put("sys/class/power_supply/AC/type", "Mains\n");
    put("sys/class/power_supply/mouse/type", "Battery\n");
    put("sys/class/power_supply/mouse/scope", "Device\n");
    put("sys/class/power_supply/mouse/capacity", "5\n");
    EXPECT_FALSE(read().battery);
    put("sys/class/power_supply/BAT0/type", "Battery\n");
    put("sys/class/power_supply/BAT0/capacity", "42\n");
    EXPECT_DOUBLE_EQ(read().battery.value_or(-1), 42);
}

TEST_F(Facts, LanguageAndZoneAreNamedByTheirStandards) {
    EXPECT_EQ(read({"", "en_GB.UTF-8@euro", ""}).preferredLanguage, "en-GB");
    EXPECT_EQ(read({"tr:en", "en_GB.UTF-8", ""}).preferredLanguage, "tr");
    EXPECT_FALSE(read({"tr", "C.UTF-8", ""}).preferredLanguage);
    EXPECT_FALSE(read().preferredLanguage);

    EXPECT_EQ(read().timezone, "UTC");
    std::filesystem::create_directories(root.path() / "etc");
    std::filesystem::create_symlink("../usr/share/zoneinfo/Europe/Istanbul", root.path() / "etc/localtime");
    EXPECT_EQ(read().timezone, "Europe/Istanbul");
    put("usr/share/zoneinfo/Asia/Tokyo", "");
    EXPECT_EQ(read({"", "", ":Asia/Tokyo"}).timezone, "Asia/Tokyo");
    EXPECT_EQ(read({"", "", "/usr/share/zoneinfo/Asia/Tokyo"}).timezone, "Asia/Tokyo");
    EXPECT_FALSE(read({"", "", "<+03>-3"}).timezone);
}

TEST(Device, KeepsItsVendorIdentifierAcrossLaunches) {
    const TemporaryDirectory directory;
    const auto identifier = [&] {
        const auto scheduler = std::make_shared<SystemScheduler>();
        const LinuxDevice device(directory.path() / "data", scheduler);
        scheduler->runUntil(
            [&] {
                if (device.facts()->vendorIdentifier) return true;
                scheduler->postMain([] {});  // asks again
                return false;
            },
            std::chrono::seconds(20));
        return device.facts()->vendorIdentifier.value_or("");
    };
    const auto first = identifier();
    EXPECT_EQ(first.size(), 36u);
    EXPECT_EQ(identifier(), first);
}

TEST(SecureItems, AreClosedToOtherPeopleAlsoInADirectoryThatWasOpen) {
    const TemporaryDirectory directory;
    const auto secure = directory.path() / "secure";
    std::filesystem::create_directory(secure);
    std::filesystem::permissions(secure, std::filesystem::perms(0755));
    FileSecureItems items(secure);
    EXPECT_TRUE(items.store("service", "account", "secret"));
    EXPECT_EQ(std::filesystem::status(secure).permissions(), std::filesystem::perms(0700));
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(secure)) {
        EXPECT_EQ(entry.status().permissions(), std::filesystem::perms(0600));
        ++files;
    }
    EXPECT_EQ(files, 1u);

    std::ofstream(directory.path() / "file") << "in the way";
    EXPECT_FALSE(FileSecureItems(directory.path() / "file").store("service", "account", "secret"));
}

}  // namespace

}  // namespace orbinel::hosts
