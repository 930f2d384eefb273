/// @file
/// A loader that does harm when a file's first line says so, as "# poison crash". It reads nothing
/// itself: the file is left to the other loaders.

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <orvex/base/loader_3d.h>
#include <orvex/base/plugin.h>

namespace {

/// Models that this process was given.
int num_seen = 0;

[[noreturn]] void crash() {
    std::signal(SIGSEGV, SIG_DFL);
    std::raise(SIGSEGV);
    std::abort();
}

[[noreturn]] void hang() {
    for (;;)
        pause();
}

/// By pages that are written to.
[[noreturn]] void eat_memory() {
    constexpr std::size_t size = 16 << 20;
    for (;;) {
        void* const block = std::malloc(size);
        if (!block)
            crash();
        std::memset(block, 1, size);
    }
}

/// What may not be; a process that can do it dies of it.
void escape(const std::string& elsewhere) {
    const int file = open(elsewhere.c_str(), O_WRONLY | O_CREAT, 0666);
    if (file >= 0)
        crash();
    if (socket(AF_UNIX, SOCK_STREAM, 0) >= 0)
        crash();
    const pid_t child = fork();
    if (child == 0)
        _exit(0);
    if (child > 0)
        crash();
    execl("/bin/sh", "sh", "-c", "kill -9 $$", nullptr);
}

/// Waits until a file is taken away, and tells by another one that it does.
void hold(const std::string& file) {
    std::ofstream(file + "-" + std::to_string(getpid())) << "here";
    while (access(file.c_str(), F_OK) == 0)
        usleep(1000);
}

/// Asks the driver for more memory than there is.
void drown() {
    constexpr GLsizeiptr too_much = GLsizeiptr{1} << 46;
    GLuint buffer = 0;
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, too_much, nullptr, GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glDeleteBuffers(1, &buffer);
}

void do_harm(const std::string& word, const std::string& rest) {
    ++num_seen;
    if (word == "crash")
        crash();
    if (word == "hang")
        hang();
    if (word == "leave")
        _exit(0);
    if (word == "eat")
        eat_memory();
    if (word == "want")
        throw std::bad_alloc();
    if (word == "throw")
        throw std::runtime_error("poison");
    if (word == "print")
        std::printf("poison on standard output\n");
    if (word == "groan") {
        std::fprintf(stderr, "poison: that\nhurts\n");
        crash();
    }
    if (word == "age" && num_seen > 1)
        crash();
    if (word == "hold")
        hold(rest);
    if (word == "drown")
        drown();
    if (word == "die")
        kill(getpid(), SIGKILL);
    if (word == "escape")
        escape(rest);
}

class PoisonLoader : public orvex::Loader3D {
public:
    PoisonLoader() {
        set_name("poison_loader");
        set_type(orvex::PLUGIN_TYPE_LOADER_3D);
    }

    bool load_from_file(orvex::Model*, const char* filename) override {
        std::ifstream file(std::string(get_model_dir()) + filename);
        std::string mark, poison, word, rest;
        if (file >> mark >> poison >> word && mark == "#" && poison == "poison") {
            std::getline(file >> std::ws, rest);
            do_harm(word, rest);
        }
        return false;
    }
};

} // namespace

extern "C" orvex::Plugin* orvex_create_plugin() {
    return new PoisonLoader;
}

extern "C" void orvex_destroy_plugin(orvex::Plugin* plugin) {
    delete plugin;
}
