// The plain driver: seeded mutations of the seeds in the tree, so that a run is the same everywhere.
//   fuzz [--inputs N] [--seeds FOLDER] [TARGET...]      fuzz --input FILE TARGET
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "fuzz/Target.h"

namespace pdx::fuzz {
namespace {

constexpr size_t longest = 512;  // bytes of an input
constexpr unsigned hang = 60;    // seconds for 1024 inputs

std::string current;
const char* currentName = "";

/// A crash, a broken property or a hang: keeps the input.
void keep(int signal) {
    std::fprintf(stderr, "%s: signal %d; the input is kept in %s.input\n", currentName, signal, currentName);
    std::ofstream(std::string(currentName) + ".input", std::ios::binary) << current;
    _exit(1);
}

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class Mutator {
  public:
    explicit Mutator(std::vector<std::string> from) : seeds(std::move(from)) {}

    /// A seed with one to eight changes.
    void next(std::string& input) {
        input = any();
        for (size_t changes = draw(8) + 1; changes > 0; --changes) change(input);
        if (input.size() > longest) input.resize(longest);
    }

  private:
    size_t draw(size_t below) { return below == 0 ? 0 : random() % below; }
    const std::string& any() { return seeds[draw(seeds.size())]; }

    void change(std::string& input) {
        // What the rules look at; other bytes come from the seeds, or at random.
        static constexpr std::string_view marks("\"\\/ =\n\t\0.:<>&{}[]-+%#09aA~\r\xC3\xFF\xED\xF0", 32);
        const size_t at = draw(input.size() + 1), size = draw(draw(4) == 0 ? 64 : 4) + 1;
        const std::string& other = any();
        switch (draw(7)) {
            case 0:
                input.insert(at, 1, marks[draw(marks.size())]);
                break;
            case 1:
                input.erase(at, size);
                break;
            case 2:
                input.insert(at, std::string(input.substr(draw(input.size()), size)));
                break;
            case 3:
                input.insert(at, other.substr(draw(other.size()), size));
                break;
            case 4:
                input.replace(at, std::string::npos, other.substr(draw(other.size())));
                break;
            case 5:
                input.insert(at, 1, static_cast<char>(draw(256)));
                break;
            default:
                if (at < input.size()) input[at] = static_cast<char>(draw(2) ? marks[draw(marks.size())] : draw(256));
        }
    }

    std::vector<std::string> seeds;
    std::mt19937_64 random{20261125};
};

void run(const Target& target, const std::filesystem::path& folder, size_t inputs) {
    std::vector<std::filesystem::path> files;
    if (is_directory(folder))
        for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry);
    std::ranges::sort(files);
    std::vector<std::string> seeds = {""};
    for (const auto& file : files) seeds.push_back(contentOf(file));

    currentName = target.name;
    alarm(hang);
    for (const std::string& seed : seeds) {
        current = seed;
        target.run(current);
    }
    Mutator mutator(seeds);
    const auto started = std::chrono::steady_clock::now();
    for (size_t input = 0; input < inputs; ++input) {
        if (input % 1024 == 0) alarm(hang);
        mutator.next(current);
        target.run(current);
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - started;
    std::printf("%-16s %zu seeds, %zu inputs, %.1f s\n", target.name, seeds.size() - 1, inputs, taken.count());
    std::fflush(stdout);
}

int runAll(std::span<char*> arguments) {
    size_t inputs = 2000;
    std::filesystem::path seeds = "fuzz/seeds", file;
    std::vector<std::string_view> names;
    for (size_t at = 0; at < arguments.size(); ++at) {
        const std::string_view argument = arguments[at], value = at + 1 < arguments.size() ? arguments[at + 1] : "";
        if (!argument.starts_with("--")) {
            names.push_back(argument);
            continue;
        }
        ++at;
        if (argument == "--inputs") std::from_chars(value.data(), value.data() + value.size(), inputs);
        if (argument == "--seeds") seeds = value;
        if (argument == "--input") file = value;
    }
    size_t ran = 0;
    for (const Target& target : targets()) {
        if (!names.empty() && std::ranges::find(names, target.name) == names.end()) continue;
        ++ran;
        if (file.empty()) {
            run(target, seeds / target.name, inputs);
        } else {
            current = contentOf(file);
            target.run(current);
        }
    }
    return ran == (names.empty() ? targets().size() : names.size()) ? 0 : 2;
}

}  // namespace
}  // namespace pdx::fuzz

/// The sanitizers end by a signal too.
extern "C" const char* __asan_default_options() { return "abort_on_error=1:handle_abort=0:handle_segv=0"; }

int main(int count, char** arguments) {
    for (const int signal : {SIGABRT, SIGSEGV, SIGFPE, SIGALRM}) ::signal(signal, pdx::fuzz::keep);
    return pdx::fuzz::runAll(std::span(arguments, static_cast<size_t>(count)).subspan(1));
}
