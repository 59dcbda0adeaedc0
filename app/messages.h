// The application's own message ids: lines of the message file it shows.
#ifndef ZANOVIEW_APP_MESSAGES_H
#define ZANOVIEW_APP_MESSAGES_H

#include "options/message.h"

namespace zanoview2 {

enum e_message_local_t {
    MSG_APPLICATION_NAME = 0,  // the name in the title bar
    MSG_NO_IMAGE = 1,          // what follows the name while no picture is shown
};

inline char const* getmsg(e_message_local_t id) { return zanolib::getmsg(id); }

}  // namespace zanoview2

#endif
