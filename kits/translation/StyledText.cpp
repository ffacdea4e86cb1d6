// Styled text as streams and as files: a text with a flattened array of runs.

#include <TranslationUtils.h>

#include <ByteOrder.h>
#include <DataIO.h>
#include <File.h>
#include <Node.h>
#include <TextView.h>
#include <TranslatorFormats.h>
#include <TranslatorRoster.h>
#include <TypeConstants.h>

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>

static const int32 kVersion = 100;
static const size_t kLargestText = size_t(INT32_MAX) - 1;
static const char kStyles[] = "styles";

namespace {

struct RunsDeleter {
    void operator()(text_run_array* runs) const { BTextView::FreeRunArray(runs); }
};
using Runs = std::unique_ptr<text_run_array, RunsDeleter>;

struct FreeDeleter {
    void operator()(void* block) const { free(block); }
};

}  // namespace

// ---- Bytes

static status_t read_all(BPositionIO* stream, std::string* bytes)
{
    off_t size = 0;
    status_t status = stream->GetSize(&size);
    if (status != B_OK)
        return status;
    if (size < 0 || uint64(size) > kLargestText)
        return B_NO_MEMORY;
    try {
        bytes->resize(size_t(size));
    } catch (const std::bad_alloc&) {
        return B_NO_MEMORY;
    }
    const ssize_t count = stream->ReadAt(0, bytes->data(), bytes->size());
    if (count < 0)
        return status_t(count);
    bytes->resize(size_t(count));
    return B_OK;
}

// B_BAD_DATA for what has no place in the other encoding, B_BAD_VALUE for one that is not known.
static status_t recode(const std::string& bytes, const char* from, const char* to,
                       std::string* result)
{
    iconv_t converter = iconv_open(to, from);
    if (converter == reinterpret_cast<iconv_t>(-1))
        return B_BAD_VALUE;
    char* in = const_cast<char*>(bytes.data());
    size_t left = bytes.size();
    char piece[4096];
    bool done = false;
    status_t status = B_OK;
    while (!done && status == B_OK) {
        char* out = piece;
        size_t room = sizeof(piece);
        done = left == 0;
        const size_t count = done ? iconv(converter, nullptr, nullptr, &out, &room)
                                  : iconv(converter, &in, &left, &out, &room);
        result->append(piece, sizeof(piece) - room);
        if (count == size_t(-1) && errno != E2BIG)
            status = B_BAD_DATA;
    }
    iconv_close(converter);
    return status;
}

// ---- Records

template <class Header>
static bool take_header(const std::string& bytes, size_t* at, uint32 magic, Header* header)
{
    if (bytes.size() - *at < sizeof(Header))
        return false;
    memcpy(header, bytes.data() + *at, sizeof(Header));
    header->header.magic = B_BENDIAN_TO_HOST_INT32(header->header.magic);
    header->header.header_size = B_BENDIAN_TO_HOST_INT32(header->header.header_size);
    header->header.data_size = B_BENDIAN_TO_HOST_INT32(header->header.data_size);
    if (header->header.magic != magic || header->header.header_size < sizeof(Header) ||
        header->header.header_size > bytes.size() - *at ||
        header->header.data_size > bytes.size() - *at - header->header.header_size)
        return false;
    *at += header->header.header_size;
    return true;
}

// Text and runs of a stream; false if it is none of styled text.
static bool take_styled(const std::string& bytes, std::string* text, Runs* runs)
{
    size_t at = 0;
    TranslatorStyledTextStreamHeader stream;
    TranslatorStyledTextTextHeader head;
    TranslatorStyledTextStyleHeader style;
    if (!take_header(bytes, &at, TranslatorStyledTextStreamHeader::STREAM_HEADER_MAGIC, &stream))
        return false;
    at += stream.header.data_size;
    if (!take_header(bytes, &at, TranslatorStyledTextTextHeader::TEXT_HEADER_MAGIC, &head))
        return false;
    text->assign(bytes, at, head.header.data_size);
    at += head.header.data_size;
    if (take_header(bytes, &at, TranslatorStyledTextStyleHeader::STYLE_HEADER_MAGIC, &style)) {
        int32 size = int32(style.header.data_size);
        runs->reset(BTextView::UnflattenRunArray(bytes.data() + at, &size));
    }
    return true;
}

template <class Header>
static Header make_header(uint32 magic, size_t data_size)
{
    Header header = {};
    header.header.magic = uint32(B_HOST_TO_BENDIAN_INT32(magic));
    header.header.header_size = uint32(B_HOST_TO_BENDIAN_INT32(sizeof(Header)));
    header.header.data_size = uint32(B_HOST_TO_BENDIAN_INT32(uint32(data_size)));
    return header;
}

static status_t write_all(BPositionIO* stream, const void* bytes, size_t size)
{
    const ssize_t count = stream->Write(bytes, size);
    return count < 0 ? status_t(count) : size_t(count) == size ? B_OK : B_IO_ERROR;
}

// ---- Reading

static bool is_text(const std::string& bytes)
{
    return memchr(bytes.data(), 0, std::min<size_t>(bytes.size(), 4096)) == nullptr;
}

// What a translator makes of a stream.
static bool translate(BPositionIO* stream, BTranslatorRoster* roster, std::string* bytes)
{
    if (roster == nullptr)
        roster = BTranslatorRoster::Default();
    BMallocIO styled;
    if (roster->Translate(stream, nullptr, nullptr, &styled, B_STYLED_TEXT_FORMAT) != B_OK)
        return false;
    bytes->assign(static_cast<const char*>(styled.Buffer()), styled.BufferLength());
    return true;
}

static void read_styles(BPositionIO* stream, Runs* runs)
{
    auto* node = dynamic_cast<BNode*>(stream);
    attr_info info;
    if (node == nullptr || *runs != nullptr || node->GetAttrInfo(kStyles, &info) != B_OK ||
        info.size <= 0 || uint64(info.size) > kLargestText)
        return;
    std::string flat(size_t(info.size), '\0');
    const ssize_t count = node->ReadAttr(kStyles, B_RAW_TYPE, 0, flat.data(), flat.size());
    int32 size = int32(count);
    if (count > 0)
        runs->reset(BTextView::UnflattenRunArray(flat.data(), &size));
}

status_t BTranslationUtils::GetStyledText(BPositionIO* fromStream, BTextView* intoView,
                                          BTranslatorRoster* roster)
{
    return GetStyledText(fromStream, intoView, nullptr, roster);
}

status_t BTranslationUtils::GetStyledText(BPositionIO* fromStream, BTextView* intoView,
                                          const char* encoding, BTranslatorRoster* roster)
{
    if (fromStream == nullptr || intoView == nullptr)
        return B_BAD_VALUE;
    std::string bytes, text, translated;
    Runs runs;
    status_t status = read_all(fromStream, &bytes);
    if (status != B_OK)
        return status;
    if (take_styled(bytes, &text, &runs)) {
        // As it is.
    } else if (!is_text(bytes)) {
        if (!translate(fromStream, roster, &translated) || !take_styled(translated, &text, &runs))
            return B_NO_TRANSLATOR;
    } else if (encoding != nullptr) {
        status = recode(bytes, encoding, "UTF-8", &text);
        if (status != B_OK)
            return status;
    } else {
        text.swap(bytes);
    }
    read_styles(fromStream, &runs);
    intoView->SetText(text.data(), int32(std::min(text.size(), kLargestText)), runs.get());
    return B_OK;
}

// ---- Writing

// The view's runs, flattened; null without memory.
static std::unique_ptr<void, FreeDeleter> flat_runs(const BTextView* view, int32* size)
{
    const Runs runs(view->RunArray(0, view->TextLength()));
    return std::unique_ptr<void, FreeDeleter>(BTextView::FlattenRunArray(runs.get(), size));
}

status_t BTranslationUtils::PutStyledText(BTextView* fromView, BPositionIO* intoStream,
                                          BTranslatorRoster*)
{
    if (fromView == nullptr || intoStream == nullptr)
        return B_BAD_VALUE;
    int32 size = 0;
    const auto flat = flat_runs(fromView, &size);
    if (flat == nullptr)
        return B_NO_MEMORY;
    const auto length = size_t(fromView->TextLength());
    auto stream = make_header<TranslatorStyledTextStreamHeader>(
        TranslatorStyledTextStreamHeader::STREAM_HEADER_MAGIC, 0);
    stream.version = int32(B_HOST_TO_BENDIAN_INT32(kVersion));
    const auto text = make_header<TranslatorStyledTextTextHeader>(
        TranslatorStyledTextTextHeader::TEXT_HEADER_MAGIC, length);
    auto style = make_header<TranslatorStyledTextStyleHeader>(
        TranslatorStyledTextStyleHeader::STYLE_HEADER_MAGIC, size_t(size));
    style.apply_length = uint32(B_HOST_TO_BENDIAN_INT32(uint32(length)));
    status_t status = write_all(intoStream, &stream, sizeof(stream));
    if (status == B_OK)
        status = write_all(intoStream, &text, sizeof(text));
    if (status == B_OK)
        status = write_all(intoStream, fromView->Text(), length);
    if (status == B_OK)
        status = write_all(intoStream, &style, sizeof(style));
    return status == B_OK ? write_all(intoStream, flat.get(), size_t(size)) : status;
}

status_t BTranslationUtils::WriteStyledEditFile(BTextView* fromView, BFile* intoFile)
{
    return WriteStyledEditFile(fromView, intoFile, nullptr);
}

static status_t write_attribute(BFile* file, const char* name, type_code type, const void* data,
                                size_t size)
{
    const ssize_t count = file->WriteAttr(name, type, 0, data, size);
    return count < 0 ? status_t(count) : B_OK;
}

status_t BTranslationUtils::WriteStyledEditFile(BTextView* fromView, BFile* intoFile,
                                                const char* encoding)
{
    if (fromView == nullptr || intoFile == nullptr)
        return B_BAD_VALUE;
    std::string text(fromView->Text(), size_t(fromView->TextLength()));
    if (encoding != nullptr) {
        std::string recoded;
        const status_t status = recode(text, "UTF-8", encoding, &recoded);
        if (status != B_OK)
            return status;
        text.swap(recoded);
    }
    status_t status = intoFile->SetSize(0);
    if (status == B_OK && intoFile->Seek(0, SEEK_SET) < 0)
        status = B_IO_ERROR;
    if (status == B_OK)
        status = write_all(intoFile, text.data(), text.size());
    if (status != B_OK)
        return status;
    static const char kType[] = "text/plain";
    const auto align = int32(B_HOST_TO_BENDIAN_INT32(fromView->Alignment()));
    const auto wrap = int32(B_HOST_TO_BENDIAN_INT32(fromView->DoesWordWrap() ? 1 : 0));
    status = write_attribute(intoFile, "BEOS:TYPE", B_MIME_STRING_TYPE, kType, sizeof(kType));
    if (status == B_OK)
        status = write_attribute(intoFile, "alignment", B_INT32_TYPE, &align, sizeof(align));
    if (status == B_OK)
        status = write_attribute(intoFile, "wrap", B_INT32_TYPE, &wrap, sizeof(wrap));
    int32 size = 0;
    const auto flat = flat_runs(fromView, &size);
    if (status == B_OK && flat != nullptr && fromView->IsStylable())
        status = write_attribute(intoFile, kStyles, B_RAW_TYPE, flat.get(), size_t(size));
    return status;
}
