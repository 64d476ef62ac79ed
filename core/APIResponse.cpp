#include "APIResponse.h"

#include "FeedDecoder.h"

const QList<Aircraft> &APIResponse::list() const
{
    static const QList<Aircraft> none;
    if (ac)
        return *ac;
    if (aircraft)
        return *aircraft;
    return none;
}

Decoded<APIResponse> APIResponse::decode(const QByteArray &json)
{
    return FeedDecoder::decodeResponse(json);
}
