/* Renders every character of data/volter through SDL_ttf at sizes 9 and 18 and compares each pixel
 * with the bitmap it was built from. Arguments: the font, a dump with one line per character:
 * "code advance row0 row1 ...", each row a hexadecimal mask whose bit x is column x.
 * Beside single characters it renders every pair of a character with 'H', both ways, so that
 * advances and left edges are compared too. Prints a summary; returns 1 at any difference. */

#include <SDL/SDL.h>
#include <SDL/SDL_ttf.h>
#include <stdio.h>

enum { ROWS = 10, CODES = 256 };

struct glyph {
    int advance;
    unsigned rows[ROWS];
};

static struct glyph glyphs[CODES];
static int drawn[CODES];

static int read_dump(const char* path) {
    FILE* file = fopen(path, "r");
    unsigned code = 0;
    int count = 0;
    if (file == NULL) {
        return 0;
    }
    while (fscanf(file, "%x", &code) == 1 && code < CODES) {
        struct glyph* glyph = &glyphs[code];
        if (fscanf(file, "%d", &glyph->advance) != 1) {
            break;
        }
        for (int y = 0; y < ROWS; y++) {
            if (fscanf(file, "%x", &glyph->rows[y]) != 1) {
                fclose(file);
                return 0;
            }
        }
        drawn[code] = 1;
        count++;
    }
    fclose(file);
    return count;
}

/* Whether the bitmaps say that pixel (x, y) of the line, at size 9, is lit. */
static int expected_pixel(const unsigned char* text, int x, int y) {
    if (y < 0 || y >= ROWS) {
        return 0;
    }
    for (; *text != 0; text++) {
        const struct glyph* glyph = &glyphs[*text];
        if (x < glyph->advance) {
            return (int)(glyph->rows[y] >> x & 1u);
        }
        x -= glyph->advance;
    }
    return 0;
}

static int line_differs(TTF_Font* font, const char* text, int scale) {
    const SDL_Color white = {255, 255, 255, 0};
    int width = 0;
    int wrong = 0;
    SDL_Surface* surface = TTF_RenderText_Solid(font, text, white);
    if (surface == NULL) {
        printf("no surface for \"%s\": %s\n", text, TTF_GetError());
        return 1;
    }
    for (const char* mark = text; *mark != 0; mark++) {
        width += glyphs[(unsigned char)*mark].advance * scale;
    }
    wrong = surface->w != width || surface->h < ROWS * scale;
    for (int y = 0; y < surface->h; y++) {
        const Uint8* row = (const Uint8*)surface->pixels + y * surface->pitch;
        for (int x = 0; x < surface->w; x++) {
            wrong |=
                (row[x] != 0) != expected_pixel((const unsigned char*)text, x / scale, y / scale);
        }
    }
    if (wrong) {
        printf("differs at scale %d: code 0x%02X \"%s\", %d x %d, advance %d\n", scale,
               (unsigned char)text[0], text, surface->w, surface->h, width);
    }
    SDL_FreeSurface(surface);
    return wrong;
}

static int check_size(const char* path, int size, int scale) {
    TTF_Font* font = TTF_OpenFont(path, size);
    int wrong = 0;
    if (font == NULL) {
        printf("cannot open %s: %s\n", path, TTF_GetError());
        return 1;
    }
    for (int code = 1; code < CODES; code++) {
        const char lines[3][3] = {{(char)code, 0, 0}, {(char)code, 'H', 0}, {'H', (char)code, 0}};
        for (int i = 0; i < 3 && drawn[code]; i++) {
            wrong += line_differs(font, lines[i], scale);
        }
    }
    printf("size %2d: height %d, ascent %d, descent %d, line skip %d, %d lines differ\n", size,
           TTF_FontHeight(font), TTF_FontAscent(font), TTF_FontDescent(font),
           TTF_FontLineSkip(font), wrong);
    TTF_CloseFont(font);
    return wrong;
}

int main(int argc, char** argv) {
    int count = 0;
    int wrong = 0;
    if (argc != 3 || TTF_Init() != 0) {
        return 1;
    }
    count = read_dump(argv[2]);
    printf("%d characters\n", count);
    wrong = check_size(argv[1], 9, 1) + check_size(argv[1], 18, 2);
    TTF_Quit();
    return wrong != 0 || count != 191;
}
