// Certificates of proven results as files of JSON.
#pragma once

#include <string>

#include "tesk2mp/proven_certificates.hpp"

namespace cli {

/// Writes it, unless the name of the file is empty; numbers are exact decimal texts.
void write_certificate(const std::string& file, const tesk2mp::proven::Certificate& certificate);

/// Reads it back. Throws Failure where something is no number, or rows have different lengths.
tesk2mp::proven::Certificate certificate_of(const std::string& text, const std::string& source);

}  // namespace cli
