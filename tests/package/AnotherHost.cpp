// SPDX-License-Identifier: MIT
// The minimum that the author of another host writes: tests that need more are skipped.

#include "LinkedHost.h"

#include "reference-host/ovra-core/reference/Application.h"

#include <optional>

namespace ovra::conformance {

class MyHost final : public HostUnderTest
{
public:
    std::string name() const override { return "another host"; }
    void startApplication() override { m_application.emplace(); }
    void processEvents() override { m_application->processEvents(); }

private:
    std::optional<reference::Application> m_application;
};

std::unique_ptr<HostUnderTest> linkedHost()
{
    return std::make_unique<MyHost>();
}

} // namespace ovra::conformance
