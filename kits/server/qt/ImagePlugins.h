#ifndef SERVER_QT_IMAGE_PLUGINS_H
#define SERVER_QT_IMAGE_PLUGINS_H

namespace server {

// To be held while Qt reads or writes an image, and until its objects for that are gone. The
// process' end waits a while for those that hold one, and allows no other thread than its own one
// any more. Any thread.
class ImageWork {
public:
    ImageWork();
    ~ImageWork();
    ImageWork(const ImageWork&) = delete;
    ImageWork& operator=(const ImageWork&) = delete;
    bool IsAllowed() const { return fAllowed; }

private:
    bool fAllowed;
};

}  // namespace server

#endif  // SERVER_QT_IMAGE_PLUGINS_H
