// What GLFW tells, in the viewer's words.

#include "glfw_window.h"

#include <optional>
#include <vector>

#include <orvex_kit/windows/glfw.h>

#include "start.h"

using namespace orvex::kit;

namespace {

/// GLFW's own words for what went wrong last.
std::string words_of_glfw() {
    const char* words = nullptr;
    glfwGetError(&words);
    return words ? words : "GLFW doesn't say why";
}

Key key_of_code(int code) {
    struct Pair {
        int code;
        Key key;
    };
    constexpr Pair pairs[] = {
        {GLFW_KEY_ESCAPE, Key::escape},       {GLFW_KEY_TAB, Key::tab},
        {GLFW_KEY_HOME, Key::home},           {GLFW_KEY_LEFT, Key::left},
        {GLFW_KEY_RIGHT, Key::right},         {GLFW_KEY_UP, Key::up},
        {GLFW_KEY_DOWN, Key::down},           {GLFW_KEY_PAGE_UP, Key::page_up},
        {GLFW_KEY_PAGE_DOWN, Key::page_down}, {GLFW_KEY_F1, Key::f1},
        {GLFW_KEY_LEFT_SHIFT, Key::shift},    {GLFW_KEY_RIGHT_SHIFT, Key::shift},
    };
    for (const Pair& pair : pairs)
        if (pair.code == code)
            return pair.key;
    const bool is_digit = code >= GLFW_KEY_0 && code <= GLFW_KEY_9;
    return is_digit ? static_cast<Key>(code) : Key::none;
}

/// A letter is what the keyboard's layout makes of its key; a digit is one with shift or without.
Key key_of_event(int code, int scancode) {
    const Key key = key_of_code(code);
    const char* const name = key == Key::none ? glfwGetKeyName(code, scancode) : nullptr;
    const bool is_letter = name && name[0] >= 'a' && name[0] <= 'z' && name[1] == '\0';
    return is_letter ? key_of(name[0]) : key;
}

Button button_of(int number) {
    return number == GLFW_MOUSE_BUTTON_LEFT    ? Button::left
           : number == GLFW_MOUSE_BUTTON_RIGHT ? Button::right
                                               : Button::middle;
}

Viewer& viewer_of(GLFWwindow* window) {
    return *static_cast<Viewer*>(glfwGetWindowUserPointer(window));
}

void on_key(GLFWwindow* window, int code, int scancode, int action, int) {
    const Key key = key_of_event(code, scancode);
    if (action == GLFW_PRESS)
        viewer_of(window).press(key);
    else if (action == GLFW_RELEASE)
        viewer_of(window).release(key);
}

void on_button(GLFWwindow* window, int number, int action, int) {
    if (action == GLFW_PRESS)
        viewer_of(window).press_button(button_of(number));
    else
        viewer_of(window).release_button(button_of(number));
}

void on_drop(GLFWwindow* window, int count, const char** paths) {
    viewer_of(window).drop({paths, paths + count});
}

void follow_size(GLFWwindow* window) {
    int width = 0, height = 0, units = 0, unused = 0;
    glfwGetFramebufferSize(window, &width, &height);
    glfwGetWindowSize(window, &units, &unused);
    float scale = 1.0f, unused_scale = 1.0f;
    glfwGetWindowContentScale(window, &scale, &unused_scale);
    // A hidden window has none, and draws nothing until it has one again.
    if (width > 0 && height > 0 && units > 0)
        viewer_of(window).resize({width, height, double(width) / units}, scale);
}

void listen(GLFWwindow* window) {
    glfwSetKeyCallback(window, on_key);
    glfwSetMouseButtonCallback(window, on_button);
    glfwSetDropCallback(window, on_drop);
    glfwSetCursorPosCallback(
        window, [](GLFWwindow* of, double x, double y) { viewer_of(of).move_pointer(x, y); });
    glfwSetScrollCallback(
        window, [](GLFWwindow* of, double, double notches) { viewer_of(of).turn_wheel(notches); });
    glfwSetWindowFocusCallback(window, [](GLFWwindow* of, int has_focus) {
        if (!has_focus)
            viewer_of(of).let_go();
    });
    glfwSetFramebufferSizeCallback(window, [](GLFWwindow* of, int, int) { follow_size(of); });
    glfwSetWindowContentScaleCallback(window,
                                      [](GLFWwindow* of, float, float) { follow_size(of); });
    glfwSetWindowRefreshCallback(window, [](GLFWwindow* of) { viewer_of(of).refresh(); });
    glfwSetWindowCloseCallback(window, [](GLFWwindow* of) { viewer_of(of).end(); });
}

GLFWwindow* open_window(const Options& options) {
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, options.gl3 ? 3 : 2);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, options.gl3 ? 2 : 1);
    if (options.gl3) {
        glfwWindowHint(GLFW_OPENGL_FORWARD_COMPAT, GLFW_TRUE);
        glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    }
    glfwWindowHint(GLFW_SCALE_TO_MONITOR, GLFW_TRUE);
    // Nobody sees it before there is something to see in it.
    glfwWindowHint(GLFW_VISIBLE, GLFW_FALSE);
    return glfwCreateWindow(options.size.width, options.size.height, "orvex-view", nullptr,
                            nullptr);
}

} // namespace

class GlfwViewerWindow::Data {
public:
    explicit Data(const Options& options)
        : has_glfw(glfwInit() == GLFW_TRUE)
        , window(has_glfw ? open_window(options) : nullptr) {
        if (!window)
            return;
        view.emplace(window, view_options(options));
        glfwMakeContextCurrent(window);
        glfwSwapInterval(1);
    }
    ~Data() {
        view.reset();
        if (window)
            glfwDestroyWindow(window);
        if (has_glfw)
            glfwTerminate();
    }
    Data(const Data&) = delete;
    Data& operator=(const Data&) = delete;

private:
    friend class GlfwViewerWindow;
    bool has_glfw;
    GLFWwindow* window;
    std::optional<GlfwView> view;
};

GlfwViewerWindow::GlfwViewerWindow(const Options& options)
    : data(std::make_unique<Data>(options)) {
    if (data->window)
        return;
    why = "no window: " + words_of_glfw();
    if (data->has_glfw && options.gl3)
        why += "; --path gl2 draws with OpenGL 2.1";
    else if (!data->has_glfw)
        why += "; orvex-render draws without a display";
}

GlfwViewerWindow::~GlfwViewerWindow() = default;

void GlfwViewerWindow::attach(Viewer& viewer) {
    glfwSetWindowUserPointer(data->window, &viewer);
    listen(data->window);
    follow_size(data->window);
    glfwShowWindow(data->window);
}

double GlfwViewerWindow::now() {
    return glfwGetTime();
}

void GlfwViewerWindow::wait(double seconds) {
    if (seconds > 0.0)
        glfwWaitEventsTimeout(seconds);
    else
        glfwPollEvents();
}

bool GlfwViewerWindow::frame(const std::function<void(View& view)>& draw) {
    return data->view->frame(draw);
}

std::string GlfwViewerWindow::reason() const {
    return data->view->view() ? data->view->reason() : mistake_in(data->view->view());
}

void GlfwViewerWindow::set_title(const std::string& title) {
    glfwSetWindowTitle(data->window, title.c_str());
}
