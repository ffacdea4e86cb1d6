#ifndef _INPUT_H
#define _INPUT_H

/* What "be:opcode" of a B_INPUT_METHOD_EVENT says. A view with B_INPUT_METHOD_AWARE gets

   - STARTED, with "be:reply_to", the messenger of the input method;
   - CHANGED, with "be:string", the text so far, which takes the place of what there was of it;
     "be:confirmed", true when it is done; "be:selection" twice, bytes in it; "be:clause_start" and
     "be:clause_end" for each clause;
   - LOCATION_REQUEST, to be answered to "be:reply_to" by the same with "be:location_reply" and
     "be:height_reply" for each character: its left top on the screen, and its height;
   - STOPPED, which a view sends as well to have it over. */
enum input_method_op {
    B_INPUT_METHOD_STARTED = 0,
    B_INPUT_METHOD_STOPPED = 1,
    B_INPUT_METHOD_CHANGED = 2,
    B_INPUT_METHOD_LOCATION_REQUEST = 3
};

#endif  // _INPUT_H
