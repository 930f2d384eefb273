#include "orvex/renderer/opengl/window/linux/private/egl_device.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <GL/gl.h>

#include "orvex/renderer/opengl/window/private/render_window_opengl.h"
#include "tests/support/log_capture.h"
#include "tests/support/memory_runs_out.h"
#include "tests/support/temp_dir.h"

namespace orvex_test {

using namespace orvex;

namespace {

/// Sets the choice for as long as it lives.
class DeviceChoice {
public:
    explicit DeviceChoice(const std::string& choice) {
        setenv("ORVEX_GL_DEVICE", choice.c_str(), 1);
    }
    ~DeviceChoice() { unsetenv("ORVEX_GL_DEVICE"); }
    DeviceChoice(const DeviceChoice&) = delete;
    DeviceChoice& operator=(const DeviceChoice&) = delete;
};

/// @param device  that the request chooses, or null
bool begin(RenderWindow& window, const char* device = nullptr) {
    RenderWindow_ExtraData extra;
    extra.device = device;
    return window.initialize(nullptr, nullptr, 8, 8, nullptr, nullptr, &extra);
}

TEST(DeviceChoiceTest, is_an_index_a_pci_path_or_software) {
    RenderWindow_Device card;
    card.index = 1;
    card.pci = "0000:01:00.0";
    RenderWindow_Device software;
    software.index = 2;
    software.software = true;
    for (const char* choice : {"1", "0000:01:00.0", "01:00.0"}) {
        EXPECT_TRUE(is_chosen(card, choice)) << choice;
        EXPECT_FALSE(is_chosen(software, choice)) << choice;
    }
    for (const char* choice : {"2", "software"}) {
        EXPECT_FALSE(is_chosen(card, choice)) << choice;
        EXPECT_TRUE(is_chosen(software, choice)) << choice;
    }
    for (const char* choice : {"", "0", "1x", "-1", "01:00", "0001:01:00.0", "Software"}) {
        EXPECT_FALSE(is_chosen(card, choice)) << choice;
        EXPECT_FALSE(is_chosen(software, choice)) << choice;
    }
}

TEST(DeviceTextTest, tells_a_device_by_its_node_or_by_what_it_is) {
    RenderWindow_Device device;
    device.index = 3;
    EXPECT_EQ(device_text(device), "device 3");
    device.node = "/dev/dri/renderD128";
    EXPECT_EQ(device_text(device), "/dev/dri/renderD128");
    device.pci = "0000:01:00.0";
    EXPECT_EQ(device_text(device), "/dev/dri/renderD128 (0000:01:00.0)");
    device.software = true;
    EXPECT_EQ(device_text(device), "software");
}

TEST(UnservedNodesTest, are_those_of_a_machine_on_which_only_software_draws) {
    const TempDir folder;
    EXPECT_EQ(unserved_nodes({}, folder.path()), std::vector<std::string>());
    std::filesystem::create_directory(folder.path() + "/dri");
    for (const char* name : {"renderD129", "renderD128", "card0"})
        std::ofstream(folder.path() + "/dri/" + name) << ' ';
    const std::vector<std::string> both = {folder.path() + "/dri/renderD128",
                                           folder.path() + "/dri/renderD129"};
    EXPECT_EQ(unserved_nodes({}, folder.path()), both);
    EglDevice device;
    device.facts.software = true;
    EXPECT_EQ(unserved_nodes({device}, folder.path()), both);
    device.facts.software = false;
    EXPECT_EQ(unserved_nodes({device}, folder.path()), std::vector<std::string>());
}

TEST(UnservedNodesTest, are_not_told_where_memory_runs_out) {
    const TempDir folder;
    std::filesystem::create_directory(folder.path() + "/dri");
    std::ofstream(folder.path() + "/dri/renderD128") << ' ';
    EXPECT_EQ(unserved_nodes({}, folder.path()).size(), 1u);
    const unsigned long refused =
        refuse_each_block([&] { unserved_nodes({}, folder.path()); }, [] {});
    EXPECT_GT(refused, 1u);
    EXPECT_EQ(unserved_nodes({}, folder.path()).size(), 1u);
}

class DeviceListTest : public testing::Test {
protected:
    std::vector<RenderWindow_Device> devices = RenderWindow::list_devices();

    const RenderWindow_Device* software() const {
        const auto found = std::find_if(devices.begin(), devices.end(),
                                        [](const auto& device) { return device.software; });
        return found != devices.end() ? &*found : nullptr;
    }
};

TEST_F(DeviceListTest, counts_from_zero_and_tells_a_driver_or_a_refusal) {
    ASSERT_FALSE(devices.empty());
    for (std::size_t i = 0; i < devices.size(); ++i) {
        EXPECT_EQ(devices[i].index, static_cast<int>(i));
        EXPECT_NE(devices[i].driver.empty(), devices[i].refusal.empty());
    }
    ASSERT_NE(software(), nullptr);
    EXPECT_EQ(software()->refusal, "");
    EXPECT_EQ(software()->node, "");
}

TEST_F(DeviceListTest, leaves_what_is_current_as_it_is) {
    RenderWindowOpenGL window;
    ASSERT_TRUE(begin(window));
    RenderWindow::list_devices();
    EXPECT_EQ(eglGetCurrentContext(), window.osx_get_cgl_ctx());
}

TEST_F(DeviceListTest, gives_the_device_that_the_environment_chooses) {
    ASSERT_NE(software(), nullptr);
    for (const std::string& choice : {std::string("software"), std::to_string(software()->index)}) {
        const DeviceChoice chosen(choice);
        const LogCapture log;
        RenderWindowOpenGL window;
        ASSERT_TRUE(begin(window)) << choice;
        EXPECT_EQ(log.messages(), std::vector<std::string>(
                                      {std::string("<o> OpenGL device: software - ") +
                                       reinterpret_cast<const char*>(glGetString(GL_RENDERER))}));
    }
}

TEST_F(DeviceListTest, has_no_window_for_a_device_that_nobody_has) {
    for (const char* choice : {"99", "0000:ff:1f.7", "no such thing"}) {
        const DeviceChoice chosen(choice);
        const LogCapture log;
        RenderWindowOpenGL window;
        EXPECT_FALSE(begin(window)) << choice;
        ASSERT_EQ(log.messages().size(), 1u);
        EXPECT_EQ(log.messages()[0],
                  "<*> ORVEX_GL_DEVICE=" + std::string(choice) + ": no such device");
    }
    RenderWindowOpenGL window;
    EXPECT_TRUE(begin(window)) << "the choice is read for each window";
}

TEST_F(DeviceListTest, gives_the_device_that_a_request_chooses_above_the_environment) {
    const DeviceChoice chosen("99");
    RenderWindowOpenGL window;
    EXPECT_TRUE(begin(window, "software"));
    EXPECT_FALSE(begin(window, "")) << "nothing is no choice";
}

TEST_F(DeviceListTest, tells_of_a_request_for_a_device_that_nobody_has) {
    const LogCapture log;
    RenderWindowOpenGL window;
    EXPECT_FALSE(begin(window, "99"));
    EXPECT_EQ(log.messages(), std::vector<std::string>({"<*> device 99: no such device"}));
}

TEST_F(DeviceListTest, tells_why_a_chosen_device_gives_no_window) {
    const DeviceChoice chosen("software");
    const LogCapture log;
    RenderWindowOpenGL window;
    EXPECT_FALSE(window.initialize(nullptr, nullptr, 1 << 30, 1, nullptr, nullptr, nullptr));
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_NE(log.messages()[0].find("software, which has no such configuration"),
              std::string::npos)
        << log.messages()[0];
}

} // namespace

} // namespace orvex_test
