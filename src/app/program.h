#pragma once

// The whole program, joined: logic and windows on a machine. The process around it (main.cpp), the
// tour and the end-to-end tests each give it a machine and a user.

#include "keys/current_key.h"
#include "util/machine.h"

#include <memory>

class QWidget;

namespace zr5 {

class Program {
  public:
    /// What `machine` names outlives the program. Loads the program texts and makes the main
    /// window, hidden.
    explicit Program(const Machine& machine);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// The steps of starting; shows the main window. False when the program cannot run and has
    /// said so.
    [[nodiscard]] bool Start();

    /// Ends the program as by Quit, but without questions: a file that is being written is undone,
    /// a replacement that has begun is finished.
    void EndFromOutside();
    /// Whether that was asked for.
    [[nodiscard]] bool HasEnded() const;

    [[nodiscard]] QWidget& Window();
    [[nodiscard]] const CurrentKey& Key() const;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace zr5
