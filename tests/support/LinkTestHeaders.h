#pragma once

// What tests of channels include besides, to be precompiled.
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/ip/udp.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>

#include "TestHeaders.h"
