#pragma once

#include <functional>

// The memory of this test program: any allocation can be refused, and what is not given back is
// counted. What TinyXML allocates while it parses is not counted, nor watched for leaks: a refusal
// there loses the nodes that it was building, in a library that is not ours.

/// Runs an operation while its allocations are refused.
using Refus = std::function<void(const std::function<void()>& operation)>;

/// Calls `essai` again and again, with its `Refus` refusing the i-th allocation of the operation
/// for every i until nothing is left to refuse, then the i-th and all those after it. `essai`
/// answers whether the operation said that it succeeded, and checks what it left. The operation
/// must succeed when nothing was refused, let no exception out, and leave no memory behind. Returns
/// how often it failed.
long a_chaque_refus(const std::function<bool(const Refus&)>& essai);
