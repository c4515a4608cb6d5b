#pragma once

namespace orbinel {

/// Asking the person to allow pushes, as far as a message may do so.
class PushPermissionRequest {
public:
    virtual ~PushPermissionRequest() = default;
    virtual void registerWithQuietPermission(bool quiet) = 0;
};

}  // namespace orbinel
