#include "cloud/cloud_error.h"

namespace sodam {

CloudError CloudError::http(int status, std::string body) {
  return CloudError{Kind::http, status, std::move(body)};
}

std::string CloudError::text() const {
  switch (kind) {
    case Kind::signedOut:
      return "로그인이 필요해요";
    case Kind::bad:
      return "서버 답을 읽지 못했어요";
    case Kind::http:
      break;
  }
  if (status == 403 || body.find("PERMISSION_DENIED") != std::string::npos) return "권한이 없어요";
  if (status == 404) return "찾지 못했어요";
  return "서버와 연결하지 못했어요";
}

}  // namespace sodam
