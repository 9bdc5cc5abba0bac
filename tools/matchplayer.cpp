#include "tools/matchplayer.h"

#include <random>
#include <stdexcept>
#include <system_error>

namespace {

constexpr char WEIGHTS[] = "values.txt", REFUSAL[] = "Error loading values.txt";

// What every player that knows the option gets first: as little help as the other one has.
const std::pair<const char*, const char*> PLAIN_OPTIONS[] = {
    {"Hash", "16"}, {"OwnBook", "false"}, {"NalimovPath", "<empty>"}};

}  // namespace

WorkDirectory::WorkDirectory() {
    std::random_device random;
    do {
        path_ = std::filesystem::temp_directory_path() / ("kestrovan-match-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
}

WorkDirectory::~WorkDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

MatchPlayer::MatchPlayer(const Request& request, int timeoutMs) : program_(request.Program) {
    // What stands here is meant, else what the system knows by this name.
    const bool isHere = std::filesystem::exists(program_);
    setup_.Program = isHere ? std::filesystem::absolute(program_).string() : program_;
    setup_.TimeoutMs = timeoutMs;
    ChooseDirectory(request);
    UciEngine engine(setup_);
    try {
        engine.Greet();
        name_ = engine.Name();
        ChooseOptions(engine, request.Options);
        engine.BeginGame();
    } catch (const EngineFault& fault) {
        throw std::runtime_error(program_ + " is no UCI engine: it " + fault.what());
    }
    if (engine.HasSaid(REFUSAL) &&
        std::filesystem::exists(std::filesystem::path(setup_.Directory) / WEIGHTS)) {
        throw std::runtime_error(program_ + " can't use the weights: " + REFUSAL);
    }
    engine.Quit();
}

void MatchPlayer::ChooseDirectory(const Request& request) {
    setup_.Directory = request.Directory;
    if (!request.Directory.empty()) return;
    temporary_.emplace();
    setup_.Directory = temporary_->Path().string();
    if (!request.Weights.empty()) std::filesystem::copy_file(request.Weights, temporary_->Path() / WEIGHTS);
}

void MatchPlayer::ChooseOptions(const UciEngine& engine, const std::vector<std::string>& wanted) {
    for (const auto& [name, value] : PLAIN_OPTIONS) {
        if (engine.HasOption(name)) setup_.Options.emplace_back(name, value);
    }
    for (const std::string& text : wanted) {
        const size_t sign = text.find('=');
        const std::string name = text.substr(0, sign);
        if (!engine.HasOption(name)) throw std::runtime_error(program_ + " has no option " + name);
        setup_.Options.emplace_back(name, text.substr(sign + 1));
    }
}
