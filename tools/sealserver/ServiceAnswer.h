// ServiceAnswer.h - the answers of the service: XML in UTF-8, one element a line, lines ended by
// carriage return and line feed.
#pragma once

#include <string>
#include <utility>
#include <vector>

// Readers go through an answer once and forward, so the elements stand in the order of these lines.

// STATUSCODE 200.
std::string AnswerHello();
// STATUSCODE 200, COUNT, and for each seal SEALINFO with SEALNUM and SEALNAME, the pair given.
std::string AnswerSealList(const std::vector<std::pair<std::string, std::string>>& seals);
// STATUSCODE 200, SEAL in Base64.
std::string AnswerSeal(const std::string& file);
// STATUSCODE 200, SEALSTATUS.
std::string AnswerSealStatus(const std::string& status);
// STATUSCODE other than 200, MESSAGE.
std::string AnswerRefusal(int status, const std::string& message);
