// A class whose one instance registers itself, so that free callbacks can
// reach it without a global variable of its own.
#ifndef ZANOVIEW_WINDOW_SINGLETON_H
#define ZANOVIEW_WINDOW_SINGLETON_H

namespace wenk {

template <typename T>
class singleton {
public:
    singleton() { ms_singleton = static_cast<T*>(this); }
    ~singleton() { ms_singleton = nullptr; }
    singleton(singleton const&) = delete;
    singleton& operator=(singleton const&) = delete;

    // No check: the instance exists from before main to process exit.
    static T& getSingleton() { return *ms_singleton; }

private:
    static T* ms_singleton;
};

template <typename T>
T* singleton<T>::ms_singleton = nullptr;

}  // namespace wenk

#endif
