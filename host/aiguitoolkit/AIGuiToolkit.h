#pragma once
// The host's AI GUI toolkit: widgets shared by the dashboard modules
// (shake buttons, expandable tree views, layout manager of play windows,
// division selector, full-screen container). GUI thread only.
namespace aiguitoolkit {
constexpr int kToolkitVersion = 1;
}
