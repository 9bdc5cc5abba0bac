#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tools/uciengine.h"

// A new empty directory, removed with everything in it at the end.
class WorkDirectory {
  public:
    WorkDirectory();
    ~WorkDirectory();
    WorkDirectory(const WorkDirectory&) = delete;
    WorkDirectory& operator=(const WorkDirectory&) = delete;

    const std::filesystem::path& Path() const { return path_; }

  private:
    std::filesystem::path path_;
};

// A side of a match: a program that has been tried out, and the directory that it is started in.
class MatchPlayer {
  public:
    struct Request {
        std::string Program;
        std::vector<std::string> Options;  // NAME=VALUE
        std::string Directory;             // empty: a temporary one, with nothing but the weights in it
        std::string Weights;               // the file that the temporary one gets as values.txt; empty: none
    };

    // Starts the program once. Throws std::runtime_error when it doesn't get ready, lacks one of the options
    // or refuses the weights.
    MatchPlayer(const Request& request, int timeoutMs);

    const std::string& Program() const { return program_; }  // as it was asked for
    const std::string& Name() const { return name_; }        // as it calls itself
    const EngineSetup& Setup() const { return setup_; }

  private:
    void ChooseDirectory(const Request& request);
    void ChooseOptions(const UciEngine& engine, const std::vector<std::string>& wanted);

    std::string program_, name_;
    std::optional<WorkDirectory> temporary_;
    EngineSetup setup_;
};
