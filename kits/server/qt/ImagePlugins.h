#ifndef SERVER_QT_IMAGE_PLUGINS_H
#define SERVER_QT_IMAGE_PLUGINS_H

namespace server {

// To be called before Qt reads or writes an image. Any thread.
void ready_image_plugins();

}  // namespace server

#endif  // SERVER_QT_IMAGE_PLUGINS_H
