#pragma once

// Precompiled: further headers of tests of channels.
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>

#include "TestHeaders.h"
